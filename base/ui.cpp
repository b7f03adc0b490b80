#include "base/ui.h"

#include <cstdarg>

#include "base/str_format.h"

namespace nv {

void MessageF(Ui& ui, std::string_view title, const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = StrVPrintf(format, args);
  va_end(args);
  if (text.size() > Ui::kMaxMessageLength) text.resize(Ui::kMaxMessageLength);
  ui.Message(text, title);
}

bool AskYes(Ui& ui, DefaultButton default_button, const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = StrVPrintf(format, args);
  va_end(args);
  if (text.size() > Ui::kMaxQuestionLength) text.resize(Ui::kMaxQuestionLength);
  return ui.Question(text, default_button) == Answer::kYes;
}

}  // namespace nv

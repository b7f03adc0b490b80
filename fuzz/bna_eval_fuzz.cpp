// Evaluates arbitrary bytes as BNA conversion expressions against a small conversion list.
// The input is cut at line feeds: the first piece is the expression of the SPECIAL field
// "Test", the next three those of "F1" to "F3" (which may refer to each other and to
// themselves), and the fifth the source line, columns separated by tabs. Every
// evaluation must end within its budget.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "import/bna/conversion/conversion_eval.h"
#include "import/bna/conversion/conversion_testing.h"
#include "store/asset/asset.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"
#include "ui/scripted_ui.h"

namespace {

std::vector<std::string> Split(const std::string& text, char separator, size_t most) {
  std::vector<std::string> pieces(1);
  for (char c : text) {
    if (c == separator && pieces.size() < most) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using nv::bna::ConversionMethod;
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> pieces = Split(text, '\n', 5);
  pieces.resize(5);

  nv::bna::testing::MemoryDefinitions definitions;
  definitions.SetScheduleName('T', "Tax");
  definitions.Define("Test", ConversionMethod::kSpecial, 0);
  definitions.Define("F1", ConversionMethod::kSpecial, 1);
  definitions.Define("F2", ConversionMethod::kSpecial, 2);
  definitions.Define("F3, Tax", ConversionMethod::kSpecial, 3);
  definitions.Define("Location", ConversionMethod::kEntire, 0);
  definitions.Define("Category", ConversionMethod::kEntire, 1);
  definitions.Define("Basis", ConversionMethod::kSet, -1, "1,234.50");
  definitions.Define("Convention", ConversionMethod::kDefault);
  definitions.Define("Hidden", ConversionMethod::kEntire, 2);
  definitions.Last().active = false;
  definitions.SetSpecial("Test", pieces[0]);
  definitions.SetSpecial("F1", pieces[1]);
  definitions.SetSpecial("F2", pieces[2]);
  definitions.SetSpecial("F3", pieces[3]);
  const std::vector<std::string> columns = Split(pieces[4], '\t', 1000);

  nv::NvAsset asset;
  asset.Clear("BT");
  nv::NvLocCatList locations;
  nv::NvLocCatList categories;
  nv::AccountGroupList groups;
  nv::ScriptedUi ui(nv::AnswerScript{});
  std::vector<nv::bna::ConversionError> errors;

  nv::bna::ConversionContext context;
  context.definitions = &definitions;
  context.columns = columns;
  context.line_number = 7;
  context.implied_decimals = 2;
  context.today = nv::Date{2, 29, 2024};
  context.asset = &asset;
  context.locations = &locations;
  context.categories = &categories;
  context.account_groups = [&groups] { return &groups; };
  context.ui = &ui;
  context.errors = &errors;

  for (char letter : {'\0', 'T'}) {
    context.letter = letter;
    nv::bna::FieldDefinition test;
    test.name = "Test";
    test.column = 0;
    static_cast<void>(nv::bna::EvaluateSpecial(test, context));
    if (context.budget.steps > nv::bna::EvaluationBudget::kMaxSteps + 1) std::abort();
    if (context.budget.depth != 0) std::abort();
  }

  // Every token as the start of a term, as an argument or a row result would be.
  const nv::bna::TokenList tokens = nv::bna::Tokenize(pieces[0]);
  for (size_t at = 0; at < tokens.size() && at < 64; ++at) {
    const nv::bna::Evaluation e = nv::bna::Evaluate(tokens, at, context);
    if (e.next <= at && at < tokens.size()) std::abort();
    if (context.budget.depth != 0) std::abort();
  }
  if (errors.size() > nv::bna::ConversionContext::kMaxErrors) std::abort();
  return 0;
}

// A window with behaviour of its own whose model lives above this layer: the export
// window "Export Company Data" and its dialog "Select Export Definition". The Ui port runs
// such a window through Ui::RunWindow; the Qt Ui binds the view of the concrete model, and
// the scripted Ui (ui/scripted_ui.h) drives it through this interface, one script line at
// a time:
//
//   show GROUP | hide GROUP   checks or clears a group of fields to choose from
//   add VALUE                 chooses a value to add and adds it
//   column LETTERS            chooses a column of a list of columns
//   definition NAME           chooses a listed definition
//   set NAME VALUE            changes one of the window's boxes
//   click BUTTON              presses one of the window's buttons
//
// Which names and values a window takes is said in its own header.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nv {

class ScriptedWindow {
 public:
  // After a step: the window stays open, or it has ended by one of its own buttons.
  enum class Step { kStays, kEnds };

  virtual ~ScriptedWindow() = default;

  // The window's name in a transcript ("export-window") and what it shows now, as
  // name=value fields separated by blanks, texts quoted as transcripts quote them.
  virtual std::string ScriptName() const = 0;
  virtual std::string ScriptState() const = 0;

  // Carries out one line: `directive` is one of the words above (lower case), `argument`
  // the rest of the line. Questions and dialogs that the step raises go through the Ui as
  // usual. Nothing when the line does not fit the window (an unknown name or value), with
  // the reason in *error; the window is then as it was.
  virtual std::optional<Step> ScriptStep(std::string_view directive, std::string_view argument,
                                         std::string* error) = 0;
};

}  // namespace nv

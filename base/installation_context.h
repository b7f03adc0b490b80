// Values fixed for the whole run: the hand-off's parameter lines, the installation, the
// configuration and the user. Start-up (shell/) fills one InstallationContext and passes
// it down by const reference; nothing reads these values from globals, so a test can run
// two installations side by side.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/date.h"

namespace nv {

// The ten lines the main program writes into our standard input, in order.
struct RunParameters {
  std::string product_name;  // line 1: inserted into messages as %s
  std::string line2;
  std::string line3;
  std::string token;  // line 4: must match the text after "/pid:"
  std::string line5;
  std::string line6;
  std::string line7;
  long line8 = 0;  // converted as by atol
  std::string line9;
  long label_code = 0;  // line 10: banner and button colours
};

// Font description as the "print to screen font" setting stores it.
struct LogFont {
  int height = 0;
  int width = 0;
  int escapement = 0;
  int orientation = 0;
  int weight = 0;
  unsigned char italic = 0;
  unsigned char underline = 0;
  unsigned char strike_out = 0;
  unsigned char char_set = 0;
  unsigned char out_precision = 0;
  unsigned char clip_precision = 0;
  unsigned char quality = 0;
  unsigned char pitch_and_family = 0;
  std::string face_name;  // at most 31 characters
};

// One of the ten configuration slots.
struct ConfigurationSlot {
  std::string name;       // slot 0 "Standard", others "Undefined" by default
  std::string data_path;  // data directory, ends with the path separator
  bool enabled = true;    // stored as "Y" / "N"
  std::string options;    // letters; "S": companies live in NUMBER.CLT subfolders
};

struct NvConfiguration {
  std::array<ConfigurationSlot, 10> slots;
  int current = 0;    // slot in use
  bool base = false;  // network user working with the shared base configuration TERM.000
};

// One company of the data directory's company list MASTER.A.
struct NvMasterRec {
  std::string number;  // up to 8 characters, upper case
  std::string name;    // up to 40 characters
};
using MasterRecArray = std::vector<NvMasterRec>;  // kept in natural order of number

// The configuration chosen for this run, with its data directory's company list.
struct CurrentConfiguration {
  ConfigurationSlot slot;
  bool subfolders = false;
  MasterRecArray companies;
};

enum class NameType { kComputer = 1, kUser = 2 };

struct InstallationContext {
  RunParameters run;
  std::string installation_folder;  // ends with the path separator
  Date today;
  bool configuration_locked = false;
  NameType name_type = NameType::kComputer;
  bool exact_name_match = false;  // "Name Case-Sensitive" = "no"
  std::string user_name;
  std::optional<LogFont> screen_print_font;  // none: "Courier New"
  NvConfiguration configuration;
  bool network_mode = false;  // TERM.1 is a terminal list
  CurrentConfiguration current;

  const std::string& data_directory() const { return current.slot.data_path; }
  const std::string& product_name() const { return run.product_name; }
};

}  // namespace nv

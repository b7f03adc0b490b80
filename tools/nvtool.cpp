// nvtool: the command-line companion of the import and export utility.
#include <iostream>
#include <string>
#include <vector>

#include "tools/nvtool_commands.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  return nv::RunNvtool(args, std::cout, std::cerr);
}

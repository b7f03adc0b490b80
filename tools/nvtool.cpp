// nvtool: the command-line companion of the import and export utility.
// Commands are added as the store grows; each prints one clear line on error.
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

int Usage() {
  std::fprintf(stderr,
               "usage: nvtool COMMAND ...\n"
               "commands:\n"
               "  version        print the program version\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage();
  std::string_view command = argv[1];
  if (command == "version") {
    std::printf("nvtool 4.1.141\n");
    return 0;
  }
  std::fprintf(stderr, "nvtool: unknown command '%s'\n", argv[1]);
  return Usage();
}

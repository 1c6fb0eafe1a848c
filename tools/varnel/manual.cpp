// Writes the manual pages and the completion of the command: varnel-manual FOLDER. Runs while the project is built.

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "command_line.h"
#include "completion.h"
#include "man_page.h"
#include "option_view.h"

namespace {

namespace fs = std::filesystem;

// The day that the environment gives builds which are to be repeated bit for bit; no date where it gives none.
std::string SourceDate() {
  const char* const epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch == nullptr) return "";
  std::time_t seconds = 0;
  const char* const end = epoch + std::strlen(epoch);
  const auto [stop, error] = std::from_chars(epoch, end, seconds);
  const std::tm* const day = error == std::errc() && stop == end ? std::gmtime(&seconds) : nullptr;
  char date[sizeof "2026-01-31"];
  if (day == nullptr || std::strftime(date, sizeof date, "%Y-%m-%d", day) == 0) {
    throw std::runtime_error("SOURCE_DATE_EPOCH is no number of seconds");
  }
  return date;
}

void Write(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

void WriteManual(const Command& top, const fs::path& folder) {
  const std::string date = SourceDate();
  fs::create_directories(folder);
  fs::remove_all(folder / "man1");  // with pages of subcommands that are no more
  fs::create_directory(folder / "man1");
  std::vector<const Command*> commands = Subcommands(top);
  commands.push_back(&top);
  for (const Command* command : commands)
    Write(folder / "man1" / (PageName(*command) + ".1"), ManPage(*command, date));
  Write(folder / top.get_name(), BashCompletion(top));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: varnel-manual FOLDER\n";
    return EXIT_USAGE;
  }
  try {
    WriteManual(CommandLine().Top(), argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "varnel-manual: " << error.what() << '\n';
    return EXIT_BAD;
  }
  return EXIT_DONE;
}

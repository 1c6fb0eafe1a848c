// The command as a whole process, from its start to its end.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <vector>

#include "bench.h"
#include "file_peers.h"

namespace VARNEL_BENCH {

namespace {

namespace fs = std::filesystem;

constexpr size_t PACKAGES = 10000;

// Created when a row is first run.
const std::string& Stream() {
  static const std::string path = InputFile("stream.tl1", Tl1Stream(20 << 20));
  return path;
}

const std::string& PackageFolder() {
  static const std::string folder = [] {
    const std::string bytes = PackageBytes(10);
    fs::create_directory(InputFolder() + "/packages");
    for (size_t i = 0; i < PACKAGES; ++i)
      InputFile("packages/" + std::to_string(i) + ".pkg", bytes);
    return InputFolder() + "/packages";
  }();
  return folder;
}

// Runs a program with its output in a file and returns its exit status, or -1.
int Run(std::vector<std::string> words, const std::string& output) {
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child;
  const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status;
  if (error != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

int ReadAll(const std::string& path) {
  if (!fs::is_directory(path)) {
    ReadAndSearch(path);
  } else {
    for (const auto& file : fs::directory_iterator(path))
      ReadAndSearch(file.path());
  }
  return 0;
}

using Operation = std::function<int(const std::string& path)>;

void Whole(const std::string& input, Kind kind, const std::string& peer, const std::string& (*prepare)(),
           const Operation& operation) {
  benchmark::RegisterBenchmark(FieldsOf("varnel", input, kind, peer).c_str(),
                               [=](benchmark::State& state) {
                                 const std::string& path = prepare();
                                 for (auto _ : state) {
                                   if (operation(path) == 0) continue;
                                   state.SkipWithError("the program fails");
                                   break;
                                 }
                               })
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

Operation Varnel(const std::vector<std::string>& words) {
  return [words](const std::string& path) {
    std::vector<std::string> command{VARNEL_COMMAND};
    command.insert(command.end(), words.begin(), words.end());
    command.push_back(path);
    return Run(command, "/dev/null");
  };
}

// Its output is a file because grep stops at the first match if it writes to /dev/null.
Operation Grep(const std::string& options, const std::string& text) {
  return [=](const std::string& path) { return Run({"grep", options, text, path}, InputFolder() + "/count"); };
}

}  // namespace

void AddCommand() {
  const std::string tl1 = "tl1 --json, 20 MB";
  Whole(tl1, Kind::Ours, "", Stream, Varnel({"tl1", "--json"}));
  Whole(tl1, Kind::Other, "grep -c", Stream, Grep("-ac", "COMPLD"));
  Whole(tl1, Kind::Limit, "reading", Stream, ReadAll);
  const std::string packages = "package, folder of 10000";
  Whole(packages, Kind::Ours, "", PackageFolder, Varnel({"package"}));
  Whole(packages, Kind::Other, "grep -c", PackageFolder, Grep("-rac", "board100000"));
  Whole(packages, Kind::Limit, "reading", PackageFolder, ReadAll);
}

}  // namespace VARNEL_BENCH

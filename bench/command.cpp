// The command as a whole process, from its start to its end. What it reads is made when a row is first run.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <vector>

#include "file_peers.h"
#include "input_files.h"
#include "row.h"
#include "services.h"
#include "temp_folder.h"

namespace VARNEL_BENCH {

namespace {

namespace fs = std::filesystem;

constexpr size_t STREAM_SIZE = 20 << 20;
constexpr size_t PACKAGES = 10000;
constexpr size_t ENTRIES = 10;

struct Input {
  std::string path;
  size_t bytes;
};

// What elements send, over and over.
const Input& Stream() {
  static const Input stream = [] {
    std::vector<std::string> paths;
    for (const auto& file : fs::directory_iterator(VARNEL_CAPTURES)) {
      if (file.path().extension() == ".tl1") paths.push_back(file.path());
    }
    std::sort(paths.begin(), paths.end());
    std::string captures, bytes;
    for (const std::string& path : paths)
      captures += VARNEL_TEST::ReadWhole(path);
    while (bytes.size() < STREAM_SIZE)
      bytes += captures;
    return Input{InputFile("stream.tl1", bytes), bytes.size()};
  }();
  return stream;
}

const Input& PackageFolder() {
  static const Input folder = [] {
    fs::create_directory(InputFolder() + "/packages");
    const std::string bytes = PackageBytes(ENTRIES);
    for (size_t i = 0; i < PACKAGES; ++i)
      InputFile("packages/" + std::to_string(i) + ".pkg", bytes);
    return Input{InputFolder() + "/packages", PACKAGES * bytes.size()};
  }();
  return folder;
}

// Runs a program and gives its exit status, or -1.
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

void ReadFile(const std::string& path) {
  static std::vector<char> piece(1 << 20);
  const Descriptor file(path);
  while (::read(file.get(), piece.data(), piece.size()) > 0) {
  }
}

int ReadAll(const std::string& path) {
  if (!fs::is_directory(path)) {
    ReadFile(path);
  } else {
    for (const auto& file : fs::directory_iterator(path))
      ReadFile(file.path());
  }
  return 0;
}

using Operation = std::function<int(const Input&)>;

void RegisterWhole(const std::string& name, Kind kind, const std::string& against, const Input& (*prepare)(),
                   const Operation& operation) {
  const std::string fields = "varnel/" + name + '/' + NameOf(kind) + '/' + against;
  benchmark::RegisterBenchmark(fields.c_str(),
                               [=](benchmark::State& state) {
                                 const Input& input = prepare();
                                 for (auto _ : state) {
                                   if (operation(input) == 0) continue;
                                   state.SkipWithError("the program fails");
                                   break;
                                 }
                                 state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(input.bytes));
                               })
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

Operation Varnel(std::vector<std::string> options) {
  return [options](const Input& input) {
    std::vector<std::string> words{VARNEL_COMMAND};
    words.insert(words.end(), options.begin(), options.end());
    words.push_back(input.path);
    return Run(words, "/dev/null");
  };
}

// For programs that count. They write to a file: grep stops at the first match where it writes to /dev/null.
Operation Count(const std::string& script) {
  return [script](const Input& input) {
    return Run({"sh", "-c", "exec " + script, "sh", input.path}, InputFolder() + "/count");
  };
}

}  // namespace

void AddCommand() {
  const auto read = [](const Input& input) { return ReadAll(input.path); };
  const std::string tl1 = "tl1 --json, 20 MB";
  RegisterWhole(tl1, Kind::Ours, "", Stream, Varnel({"tl1", "--json"}));
  RegisterWhole(tl1, Kind::Other, "grep -c", Stream, Count("grep -ac COMPLD \"$1\""));
  RegisterWhole(tl1, Kind::Other, "wc -l", Stream, Count("wc -l \"$1\""));
  RegisterWhole(tl1, Kind::Limit, "read", Stream, read);

  const std::string packages = "package, folder of 10000";
  RegisterWhole(packages, Kind::Ours, "", PackageFolder, Varnel({"package"}));
  RegisterWhole(packages, Kind::Other, "grep -c", PackageFolder, Count("grep -rac board100000 \"$1\""));
  RegisterWhole(packages, Kind::Other, "wc -l", PackageFolder, Count("find \"$1\" -type f -exec wc -l {} +"));
  RegisterWhole(packages, Kind::Limit, "read", PackageFolder, read);
}

}  // namespace VARNEL_BENCH

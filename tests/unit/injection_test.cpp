// Every exported operation with every injected failure: memory, bounded functions, files, log service and filter.
// Nothing may leak, and the object must be in its documented state.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <new>
#include <set>
#include <stdexcept>

#include "allocation.h"
#include "operations.h"
#include "publicdata.h"
#include "recording_test.h"
#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;

using Arm = std::function<void(RecordingHost& host)>;

bool Keeps(Promise promise, const State& before, const State& after, const State& now) {
  if (promise == Promise::Usable || now == before || now == after) return true;
  if (promise == Promise::Entries)
    return now.size() < after.size() && std::equal(now.begin(), now.end(), after.begin());
  if (promise != Promise::EachPart || now.size() != after.size()) return false;
  for (size_t i = 0; i < now.size(); ++i) {
    if (now[i] != before[i] && now[i] != after[i]) return false;
  }
  return true;
}

class Injection : public RecordingTest {
 protected:
  // How a run ended.
  struct Outcome {
    bool threw;
    State state;
    size_t held;  ///< allocations of the state itself
  };

  // Runs a trial with an injected failure, and again without it.
  Outcome Run(const Operation& operation, size_t failingAllocation, const Arm& arm) {
    Outcome outcome{};
    const Trial trial = operation.prepare();
    host.Reset();
    arm(host);
    try {
      const AllocationGuard guard(failingAllocation);
      trial.run();
    } catch (const std::bad_alloc&) {
      outcome.threw = true;
    } catch (const std::runtime_error&) {
      outcome.threw = true;
    }
    calls = Calls{host.boundedCopies.Calls(), host.formats.Calls(), host.stats.Calls(),
                  host.opens.Calls(),         host.seeks.Calls(),   host.lines.size()};
    host.Reset();
    const State state = trial.state();
    const size_t live = LiveAllocations();
    outcome.state = state;
    outcome.held = LiveAllocations() - live;
    EXPECT_NO_THROW(trial.run()) << "used later";
    host.Reset();
    return outcome;
  }

  Outcome RunWithoutLeak(const Operation& operation, size_t failingAllocation, const Arm& arm) {
    const size_t descriptors = OpenDescriptors();
    host.Reset();
    const size_t live = LiveAllocations();
    Outcome outcome = Run(operation, failingAllocation, arm);
    EXPECT_EQ(LiveAllocations(), live + outcome.held) << "leaked";
    EXPECT_EQ(OpenDescriptors(), descriptors);
    ++injected;
    return outcome;
  }

  struct Calls {
    size_t copies, formats, stats, opens, seeks, lines;
  };

  State Before(const Operation& operation) { return operation.prepare().state(); }

  State After(const Operation& operation) {
    return RunWithoutLeak(operation, 0, [](RecordingHost&) {}).state;
  }

  const TempFolder folder;
  const std::vector<Operation> operations = EveryOperation(folder.Path());
  Calls calls{};
  size_t injected = 0;
};

const Arm NOTHING = [](RecordingHost&) {};

std::set<std::string> ExportedOperations() {
  std::set<std::string> names;
  std::ifstream list(VARNEL_EXPORTS);
  const std::string space = "VARNEL_COMMON::";
  for (std::string line; std::getline(list, line);) {
    if (line.find('(') == std::string::npos) continue;
    const size_t start = line.find(space) + space.size();
    const std::string name = line.substr(start, line.find('(') - start);
    names.insert(name.substr(0, name.find("[abi")));
  }
  return names;
}

// The names that only the first set contains, one on each line.
std::string Difference(const std::set<std::string>& names, const std::set<std::string>& others) {
  std::string difference;
  for (const std::string& name : names) {
    if (others.count(name) == 0) difference += name + '\n';
  }
  return difference;
}

TEST_F(Injection, TheTableContainsEveryExportedOperation) {
  std::set<std::string> names;
  for (const Operation& operation : operations)
    names.insert(operation.name);
  const std::set<std::string> exported = ExportedOperations();
  EXPECT_GT(exported.size(), 90U);
  EXPECT_EQ(Difference(exported, names), "") << "These exported operations have no row in tests/unit/operations.cpp.";
  EXPECT_EQ(Difference(names, exported), "")
      << "These rows of tests/unit/operations.cpp name nothing that is exported.";
}

TEST_F(Injection, EachAllocationFails) {
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    const State before = Before(operation);
    const State after = After(operation);
    for (size_t n = 1;; ++n) {
      const Outcome outcome = RunWithoutLeak(operation, n, NOTHING);
      if (!outcome.threw) break;
      EXPECT_TRUE(Keeps(operation.promise, before, after, outcome.state))
          << "allocation " << n << ": " << ::testing::PrintToString(outcome.state) << " was "
          << ::testing::PrintToString(before);
    }
    EXPECT_EQ(After(operation), after) << "nothing of it remains for others";
  }
  RecordProperty("injected", static_cast<int>(injected));
  EXPECT_GT(injected, 900U);
}

TEST_F(Injection, EachBoundedFunctionFailsAndTheLogServiceToo) {
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    After(operation);
    const Calls all = calls;
    for (const bool logThrows : {false, true}) {
      for (size_t n = 1; n <= all.copies; ++n) {
        RunWithoutLeak(operation, 0, [&](RecordingHost& armed) {
          armed.boundedCopies.FailAt(n);
          armed.logThrows = logThrows;
        });
      }
      for (size_t n = 1; n <= all.formats; ++n) {
        RunWithoutLeak(operation, 0, [&](RecordingHost& armed) {
          armed.formats.FailAt(n);
          armed.filterThrows = logThrows;
        });
      }
    }
  }
  RecordProperty("injected", static_cast<int>(injected));
  EXPECT_GT(injected, 400U);
}

TEST_F(Injection, LogServiceOrFilterThrows) {
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    const State before = Before(operation);
    const State after = After(operation);
    const bool reports = calls.lines > 0;
    for (const bool filter : {false, true}) {
      const Outcome outcome = RunWithoutLeak(operation, 0, [&](RecordingHost& armed) {
        armed.logThrows = !filter;
        armed.filterThrows = filter;
      });
      EXPECT_EQ(outcome.threw, reports);
      EXPECT_TRUE(Keeps(operation.promise, before, after, outcome.state)) << ::testing::PrintToString(outcome.state);
    }
  }
}

// Positions after which reading fails: each byte of the headers and texts, some of the rest.
std::vector<long> ReadableBytes(size_t size) {
  std::vector<long> bytes;
  for (size_t n = 0; n <= size; n += n < 200 || (n > 3000 && n < 3400) ? 1 : 97)
    bytes.push_back(static_cast<long>(n));
  return bytes;
}

TEST_F(Injection, EachFileCallFails) {
  const auto size = static_cast<size_t>(fs::file_size(folder.Path("software")));
  size_t seeks = 0;
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    RunWithoutLeak(operation, 0, [](RecordingHost& armed) { armed.seeks.FailAt(1000); });
    const Calls all = calls;
    seeks += all.seeks;
    for (size_t n = 1; n <= all.stats; ++n)
      RunWithoutLeak(operation, 0, [&](RecordingHost& armed) { armed.stats.FailAt(n); });
    for (size_t n = 1; n <= all.opens; ++n)
      RunWithoutLeak(operation, 0, [&](RecordingHost& armed) { armed.opens.FailAt(n); });
    for (size_t n = 1; n <= all.seeks; ++n)
      RunWithoutLeak(operation, 0, [&](RecordingHost& armed) { armed.seeks.FailAt(n); });
    if (all.opens == 0) continue;
    for (const long readable : ReadableBytes(size))
      RunWithoutLeak(operation, 0, [&](RecordingHost& armed) { armed.readableBytes = readable; });
  }
  EXPECT_GT(seeks, 5U);
  RecordProperty("injected", static_cast<int>(injected));
  EXPECT_GT(injected, 5000U);
}

// A file that is changed while it is read.
class ChangingFile : public Injection {
 protected:
  void Restore() const { folder.Write("software", original); }

  const std::string path = folder.Path("software");
  const std::string original = ReadWhole(path);
  const std::vector<std::pair<const char*, std::function<void()>>> changes{
      {"is removed", [this] { fs::remove(path); }},
      {"is emptied", [this] { fs::resize_file(path, 0); }},
      {"shrinks", [this] { fs::resize_file(path, original.size() / 2); }},
      {"shrinks into a head", [this] { fs::resize_file(path, 100); }},
      {"grows", [this] { std::ofstream(path, std::ios::app) << std::string(100000, 'g'); }},
      {"is overwritten",
       [this] { std::fstream(path, std::ios::in | std::ios::out) << std::string(original.size(), 'o'); }},
      {"is replaced by a shorter one", [this] { folder.Write("software", "short\n"); }},
      {"is replaced by a longer one", [this] { folder.Write("software", original + std::string(100000, 'l')); }},
      {"is replaced by a folder",
       [this] {
         fs::remove(path);
         fs::create_directory(path);
       }},
      {"is replaced by a loop of links",
       [this] {
         fs::remove(path);
         fs::create_symlink(path, path);
       }},
  };
};

TEST_F(ChangingFile, HasADocumentedResultForEachChangeAtEachMoment) {
  for (const Operation& operation : operations) {
    RunWithoutLeak(operation, 0, [](RecordingHost& armed) { armed.aroundOpening = [](size_t) {}; });
    const size_t moments = 2 * calls.opens;
    for (size_t moment = 0; moment < moments; ++moment) {
      for (const auto& [name, change] : changes) {
        SCOPED_TRACE(operation.name + ": the file " + name + " at moment " + std::to_string(moment));
        RunWithoutLeak(operation, 0, [&, &apply = change](RecordingHost& armed) {
          armed.aroundOpening = [&](size_t now) {
            if (now == moment) apply();
          };
        });
        Restore();
      }
    }
  }
  RecordProperty("injected", static_cast<int>(injected));
  EXPECT_GT(injected, 500U);
}

// Between the size and the read, which are separated by one open.
TEST_F(ChangingFile, LinesAreThoseBeforeTheChange) {
  const std::string file = folder.Write("lines", "one\ntwo\nthree\n");
  const auto lines = [&](const std::function<void()>& change) {
    host.aroundOpening = [&](size_t moment) {
      if (moment == 1) change();
    };
    VARNEL_COMMON::Vnifstream stream(file);
    host.Reset();
    State read;
    char line[100];
    while (stream.GetLine(line, sizeof line))
      read.emplace_back(line);
    return read;
  };
  EXPECT_EQ(lines([&] { fs::resize_file(file, 6); }), (State{"one", "tw"})) << "what is gone reads as nothing";
  folder.Write("lines", "one\ntwo\nthree\n");
  EXPECT_EQ(lines([&] { std::ofstream(file, std::ios::app) << "four\nfive\n"; }), (State{"one", "two", "three"}));
  folder.Write("lines", "one\ntwo\nthree\n");
  EXPECT_EQ(lines([&] { folder.Write("lines", "1\n2\n"); }), (State{"one", "two", "three"})) << "it is open already";
}

}  // namespace
}  // namespace VARNEL_TEST

#ifndef VARNEL_BENCH_BENCH_H
#define VARNEL_BENCH_BENCH_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace VARNEL_BENCH {

/// A peer of an operation.
enum class Kind {
  Ours,
  Peer,   ///< does the same
  Other,  ///< does less, or something else that serves the same purpose
  Limit,  ///< the least work that a machine can do for it
};

/// Name of a benchmark: operation, input, kind and peer, separated by "/".
std::string FieldsOf(const std::string& operation, const std::string& input, Kind kind, const std::string& peer);

/// Ends the program: a peer returned another answer.
[[noreturn]] void AnswersDiffer(const std::string& operation, const std::string& input, const std::string& peer);

/// An operation of the library with one input, and its peers. Each is a callable without arguments that returns its
/// answer. All but a limit must return the same answer, before anything is timed.
template <typename Ours>
class Row {
 public:
  Row(std::string operation, std::string input, Ours ours)
      : m_operation(std::move(operation)), m_input(std::move(input)), m_ours(ours) {
    Add(Kind::Ours, "", ours);
  }

  template <typename Run>
  Row& Peer(const std::string& peer, Run run) {
    return Same(Kind::Peer, peer, run);
  }

  template <typename Run>
  Row& Other(const std::string& peer, Run run) {
    return Same(Kind::Other, peer, run);
  }

  template <typename Run>
  Row& Limit(const std::string& peer, Run run) {
    return Add(Kind::Limit, peer, run);
  }

 private:
  template <typename Run>
  Row& Same(Kind kind, const std::string& peer, Run run) {
    if (!(m_ours() == run())) AnswersDiffer(m_operation, m_input, peer);
    return Add(kind, peer, run);
  }

  template <typename Run>
  Row& Add(Kind kind, const std::string& peer, Run run) {
    benchmark::RegisterBenchmark(FieldsOf(m_operation, m_input, kind, peer).c_str(),
                                 [run](benchmark::State& state) mutable {
                                   run();  // prepares data that later runs reuse
                                   for (auto _ : state)
                                     benchmark::DoNotOptimize(run());
                                 });
    return *this;
  }

  std::string m_operation;
  std::string m_input;
  Ours m_ours;
};

/// Operates on one of `count` objects after the other: with many objects, none is still in the cache at its next turn.
/// The objects are created in the first run.
template <typename Make, typename Operate>
auto EachInTurn(size_t count, Make make, Operate operate) {
  using Objects = std::vector<decltype(make(size_t{}))>;
  return [=, objects = std::make_shared<Objects>(), next = size_t{0}]() mutable {
    while (objects->size() < count)
      objects->push_back(make(objects->size()));
    if (next == count) next = 0;
    return operate(*(*objects)[next++]);
  };
}

/// Keeps an input until the program ends: runs refer to it.
const std::string& Keep(std::string input);

/// Text of reports: words in upper and lower case, most of them separated by one blank, some by runs of blanks, tabs or
/// line ends. The same in every run; kept until the program ends.
const std::string& ReportText(size_t size);

/// A stream of TL1 messages of about 160 bytes.
std::string Tl1Stream(size_t size);

/// A folder for input files that is removed when the program ends.
const std::string& InputFolder();

/// Writes a file into that folder and returns its path.
std::string InputFile(const std::string& name, const std::string& bytes);

/// Bytes of a software file whose description has `entries` entries.
std::string PackageBytes(size_t entries);

/// Each registers the rows of one module.
void AddCmdStr();
void AddComNEMsg();
void AddEvtMsg();
void AddPkgFile();
void AddPublicData();
void AddStr();
void AddTl1NEMsgParse();
void AddZepv2Data();
/// The TL1 library and the command.
void AddTl1();
void AddCommand();

}  // namespace VARNEL_BENCH

#endif

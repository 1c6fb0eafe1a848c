#ifndef VARNEL_BENCH_ROW_H
#define VARNEL_BENCH_ROW_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace VARNEL_BENCH {

/// What an operation is measured beside.
enum class Kind {
  Ours,
  Peer,     ///< gives the same answer, which is checked first
  Obvious,  ///< the same as anybody would first write it: streams, regular expressions, erasing from the front
  Other,    ///< used for the same purpose, with another contract: the answers may differ
  Limit,    ///< the least that a machine can do for it
};

const char* NameOf(Kind kind);

/// Registers one measurement; its name has the fields service, case, kind and against.
template <typename Run>
void Register(const std::string& service, const std::string& name, Kind kind, const std::string& against, size_t bytes,
              Run run) {
  const std::string fields = service + '/' + name + '/' + NameOf(kind) + '/' + against;
  benchmark::RegisterBenchmark(fields.c_str(), [run, bytes](benchmark::State& state) mutable {
    for (auto _ : state)
      benchmark::DoNotOptimize(run());
    if (bytes > 0) state.SetBytesProcessed(static_cast<int64_t>(static_cast<size_t>(state.iterations()) * bytes));
  });
}

/// A row of the table: an operation of the library, and what it is measured beside. Everything that runs is a callable
/// without arguments that returns its answer.
template <typename Ours>
class Row {
 public:
  /// @param bytes  size of the input, or 0 where a rate would tell nothing.
  Row(std::string service, std::string name, size_t bytes, Ours ours)
      : m_service(std::move(service)), m_name(std::move(name)), m_bytes(bytes), m_ours(ours) {
    Register(m_service, m_name, Kind::Ours, "", m_bytes, ours);
  }

  template <typename Run>
  Row& Peer(const std::string& against, Run run) {
    return Same(Kind::Peer, against, run);
  }

  template <typename Run>
  Row& Obvious(const std::string& against, Run run) {
    return Same(Kind::Obvious, against, run);
  }

  template <typename Run>
  Row& Other(const std::string& against, Run run) {
    return Add(Kind::Other, against, run);
  }

  template <typename Run>
  Row& Limit(const std::string& against, Run run) {
    return Add(Kind::Limit, against, run);
  }

 private:
  template <typename Run>
  Row& Same(Kind kind, const std::string& against, Run run) {
    if (!(m_ours() == run())) {
      std::fprintf(stderr, "%s, %s: %s gives another answer\n", m_service.c_str(), m_name.c_str(), against.c_str());
      std::exit(EXIT_FAILURE);
    }
    return Add(kind, against, run);
  }

  template <typename Run>
  Row& Add(Kind kind, const std::string& against, Run run) {
    Register(m_service, m_name, kind, against, m_bytes, run);
    return *this;
  }

  std::string m_service;
  std::string m_name;
  size_t m_bytes;
  Ours m_ours;
};

/// One point of the plot of cost against input size.
template <typename Run>
void Growth(const std::string& service, size_t bytes, Run run) {
  Register("growth", service, Kind::Ours, std::to_string(bytes), bytes, run);
}

/// Sizes of the plot: 64 B to 64 MB in steps of 16, up to what a service takes.
constexpr size_t GROWTH_SIZES[] = {64, 1U << 10, 16U << 10, 256U << 10, 4U << 20, 64U << 20};

}  // namespace VARNEL_BENCH

#endif

#ifndef VARNEL_FUZZ_REPLAY_H
#define VARNEL_FUZZ_REPLAY_H

#include <cstddef>
#include <cstdint>
#include <string>

/// Changes an input at random, for LLVMFuzzerCustomMutator() of a target; provided by libFuzzer and by the replay.
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace VARNEL_FUZZ {

using Runner = void (*)(const std::string& input);

/// Runs the target on all short inputs, and on long inputs that random ones rarely reach. Each target may define it.
[[gnu::weak]] void RunGenerated(Runner run);

}  // namespace VARNEL_FUZZ

#endif

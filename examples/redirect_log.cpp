// Sends what the library logs to a file, or silences it.

#include <varnel_common/publicdata.h>

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <iostream>
#include <memory>

int main(int argc, char** argv) {
  if (argc > 2) {
    std::cerr << "usage: redirect_log [LOG-FILE]\n";
    return 2;
  }
  try {
    if (argc == 1) {
      spdlog::register_logger(std::make_shared<spdlog::logger>("transcommon_log"));  // no sink: silent
    } else {
      spdlog::basic_logger_mt("transcommon_log", argv[1])->set_pattern("%l: %v");
    }
  } catch (const spdlog::spdlog_ex& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  std::cout << (VARNEL_COMMON::isColdPatch("absent.pkg") ? "a cold patch\n" : "not a cold patch\n");
}

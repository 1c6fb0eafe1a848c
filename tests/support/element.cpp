// A network element for command-line tests: prints the port it listens on, serves connections one after the other, and
// ends.

#include <sys/prctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <fstream>
#include <iostream>

#include "scripted_element.h"
#include "temp_folder.h"

int main(int argc, char** argv) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // without a connection the element ends with its session
  alarm(50);
  CLI::App app("Sends a file to the first who connects");
  std::string file;
  std::string host = "127.0.0.1";
  VARNEL_TEST::ElementScript script;
  unsigned int pause = 0, times = 1;
  unsigned short port = 0;
  bool refuse = false, hang = false, talk = false;
  app.add_option("FILE", file);
  app.add_option("--host", host);
  app.add_option("--port", port);
  app.add_option("--piece", script.pieceSize);
  app.add_option("--pause", pause);
  app.add_option("--times", times);
  app.add_flag("--for-ever", script.forEver);
  app.add_flag("--silent", script.silent);
  app.add_flag("--refuse", refuse);
  app.add_flag("--hang", hang);
  app.add_flag("--talk", talk);  // FILE is a script; received commands are written to the file "received"
  try {
    app.parse(argc, argv);
    if (!file.empty()) script.bytes = VARNEL_TEST::ReadWhole(file);
    script.pause = std::chrono::milliseconds(pause);
    VARNEL_TEST::ScriptedElement element(host.c_str(), port);
    if (refuse) element.Refuse();
    if (hang) element.Hang();
    std::cout << element.Port() << std::endl;
    if (refuse || hang) ::pause();
    std::ofstream received(talk ? "received" : "");
    for (; times > 0; --times)
      talk ? element.Talk(script.bytes, received) : element.Serve(script);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "element: " << error.what() << '\n';
    return 1;
  }
  return 0;
}

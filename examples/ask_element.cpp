// Sends a command to an element and prints what the element sends until the answer: ask_element HOST PORT COMMAND

#include <netdb.h>
#include <poll.h>
#include <unistd.h>
#include <varnel_tl1/tl1.h>

#include <algorithm>
#include <iostream>
#include <random>

using namespace VARNEL_TL1;

namespace {

using Clock = std::chrono::steady_clock;

int Connect(const char* host, const char* port) {
  addrinfo hints{}, *found = nullptr;
  hints.ai_socktype = SOCK_STREAM;
  if (getaddrinfo(host, port, &hints, &found) != 0) return -1;
  const int connection = socket(found->ai_family, found->ai_socktype | SOCK_CLOEXEC, 0);
  const bool connected = connect(connection, found->ai_addr, found->ai_addrlen) == 0;
  freeaddrinfo(found);
  return connected ? connection : -1;
}

void SendOutput(int connection, Session& session) {
  while (!session.Output().empty()) {
    const ssize_t sent = send(connection, session.Output().data(), session.Output().size(), MSG_NOSIGNAL);
    if (sent < 0) return;  // reading also reports the end of the connection
    session.Sent(static_cast<size_t>(sent));
  }
}

void WaitForBytes(int connection, Session& session) {
  const auto wait = session.Deadline().value_or(Clock::now()) - Clock::now();
  pollfd ready{connection, POLLIN, 0};
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(wait).count();
  if (poll(&ready, 1, static_cast<int>(std::max<long>(milliseconds, 0))) == 0) return session.Tick(Clock::now());
  char bytes[4096];
  const ssize_t count = recv(connection, bytes, sizeof bytes, 0);
  if (count <= 0) return session.Cut();
  session.Receive({bytes, static_cast<size_t>(count)}, Clock::now());
}

void Print(const Message& message) {
  const char* const gap = message.verb.empty() ? "" : " ";
  std::cout << TypeName(message.type) << ' ' << message.code << gap << message.verb << '\n';
  LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);)
    std::cout << "    " << line << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  Command command;
  const char* fault = argc == 4 ? command.Parse(argv[3]) : "usage: ask_element HOST PORT COMMAND";
  const int connection = fault == nullptr ? Connect(argv[1], argv[2]) : -1;
  if (fault == nullptr && connection < 0) fault = "no connection";
  SessionOptions options;
  options.firstCtag = std::random_device()();
  options.timeout = std::chrono::seconds(10);
  Session session(options, Clock::now());
  if (fault == nullptr) fault = session.Send(command, Clock::now());
  for (Event event; fault == nullptr && event.kind != EventKind::Answer;) {
    SendOutput(connection, session);
    WaitForBytes(connection, session);
    while (event.kind != EventKind::Answer && session.Next(event)) {
      if (event.message != nullptr) Print(*event.message);
      if (event.kind == EventKind::NoAnswer) fault = "no answer";
    }
  }
  if (fault != nullptr) std::cerr << "ask_element: " << fault << '\n';
  return fault == nullptr ? 0 : 1;
}

#include "watch_resolver.h"

#include <ace/Reactor.h>
#include <arpa/inet.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "files.h"

namespace {

bool IsNumeric(const std::string& host) {
  in_addr number;
  return host.find(':') != std::string::npos || inet_pton(AF_INET, host.c_str(), &number) == 1;
}

}  // namespace

struct WatchResolver::Mailbox {
  void Put(const std::shared_ptr<Query>& query) {
    const std::lock_guard<std::mutex> lock(mutex);
    answered.push_back(query);
    eventfd_write(event.Get(), 1);
  }

  std::vector<std::shared_ptr<Query>> Take() {
    eventfd_t count = 0;
    const std::lock_guard<std::mutex> lock(mutex);
    eventfd_read(event.Get(), &count);
    return std::exchange(answered, {});
  }

  Descriptor event{eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
  std::mutex mutex;
  std::vector<std::shared_ptr<Query>> answered;
};

WatchResolver::WatchResolver(ACE_Reactor& reactor)
    : ACE_Event_Handler(&reactor), m_mailbox(std::make_shared<Mailbox>()) {
  if (reactor.register_handler(m_mailbox->event.Get(), this, READ_MASK) != 0)
    throw std::system_error(errno, std::generic_category(), "eventfd");
}

WatchResolver::~WatchResolver() {
  reactor()->remove_handler(m_mailbox->event.Get(), READ_MASK | DONT_CALL);
}

std::shared_ptr<WatchResolver::Query> WatchResolver::Start(const Address& address,
                                                           std::function<void(const Lookup& result)> done) {
  if (IsNumeric(address.host)) {
    done(LookUp(address));
    return nullptr;
  }
  auto query = std::make_shared<Query>(Query{address, {}, std::move(done)});
  try {
    std::thread([mailbox = m_mailbox, query] {
      query->result = LookUp(query->address);
      mailbox->Put(query);
    }).detach();
  } catch (const std::system_error& error) {  // too many threads
    query->done(Lookup{error.what(), {}});
    return nullptr;
  }
  return query;
}

int WatchResolver::handle_input(ACE_HANDLE) {
  for (const auto& query : m_mailbox->Take()) {
    if (query->done) query->done(query->result);
  }
  return 0;
}

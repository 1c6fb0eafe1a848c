#ifndef VARNEL_TOOLS_WATCH_RESOLVER_H
#define VARNEL_TOOLS_WATCH_RESOLVER_H

#include <ace/Event_Handler.h>

#include <functional>
#include <memory>

#include "address.h"

/// Looks up addresses without blocking the thread of its reactor: each name in a separate thread.
class WatchResolver : public ACE_Event_Handler {
 public:
  /// A look-up. Its owner may clear `done`, which is then not called.
  struct Query {
    Address address;
    Lookup result;
    std::function<void(const Lookup& result)> done;
  };

  /// @throw std::system_error  if no descriptor is available
  explicit WatchResolver(ACE_Reactor& reactor);
  ~WatchResolver() override;

  /// Calls `done` once, from the reactor; for a numeric address from this function itself.
  ///
  /// @return the query while it is pending, else null.
  std::shared_ptr<Query> Start(const Address& address, std::function<void(const Lookup& result)> done);

 private:
  struct Mailbox;

  int handle_input(ACE_HANDLE handle) override;

  std::shared_ptr<Mailbox> m_mailbox;  // shared with the threads, which may outlive this object
};

#endif

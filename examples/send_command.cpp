// Assembles a command text, sends it as a binary message with its header, and parses it at the receiver.

#include <varnel_common/cmdstr.h>
#include <varnel_common/comnemsg.h>

#include <cstdio>
#include <cstring>
#include <string>

using namespace VARNEL_COMMON;

namespace {

// The header in network order, then the body.
std::string Send(const CComNEMsg& message) {
  CComNEHead head(message);
  head.ToNetOrder();
  std::string wire(reinterpret_cast<const char*>(&head), sizeof head);
  return wire.append(message.m_pMsg, message.usMsgLen);
}

// The length is used only after that many bytes have arrived.
bool Receive(const std::string& wire, CComNEMsg& message) {
  CComNEHead head;
  if (wire.size() < sizeof head) return false;
  std::memcpy(static_cast<void*>(&head), wire.data(), sizeof head);
  head.ToHostOrder();
  if (wire.size() - sizeof head != head.usMsgLen) return false;
  static_cast<CComNEHead&>(message) = head;
  message.SetMsg(wire.data() + sizeof head, head.usMsgLen);
  return true;
}

void PrintBytes(const std::string& bytes) {
  for (size_t at = 0; at < bytes.size(); at += 16) {
    std::printf("%04zx ", at);
    for (const char byte : bytes.substr(at, 16))
      std::printf(" %02x", static_cast<unsigned char>(byte));
    std::printf("\n");
  }
}

}  // namespace

int main() {
  CCmdStr command;
  command.SetMsg("LOAD-SOFT");
  command.AddMsg(":FILE=sample.pkg,");
  command.AddMsg("SLOT=3-5;\r\n");
  if (command.AddSnMML(0x1234) == 0) return 1;
  std::printf("text \"%s\", with its serial number %u bytes\n", command.GetMsg(), command.GetMsgLen());

  CComNEMsg message(0);
  message.ulHeadWord0 = 0x01020304;  // program and element agree on the meaning of these words
  message.usHeadShort = 7;
  message.SetMsg(command.GetMsg(), command.GetMsgLen());
  command.EmptyMsg();  // wipes its memory; the caller must wipe a CComNEMsg

  std::string wire = Send(message);
  message.EmptyMsg();
  PrintBytes(wire);

  CComNEMsg received(0);
  if (!Receive(wire, received)) return 1;
  std::printf("received %u bytes: \"%s\", serial number %02x\n", received.usMsgLen, received.m_pMsg,
              static_cast<unsigned char>(received.m_pMsg[received.usMsgLen - 1]));
  wire.pop_back();
  if (!Receive(wire, received)) std::printf("a message that lacks its last byte is refused\n");
}

// A sequence of operations on a command text and on a binary message, each compared with a plain model.

#include <cmdstr.h>
#include <comnemsg.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "kept_log.h"
#include "replay.h"
#include "string_references.h"

using VARNEL_COMMON::CCmdStr;
using VARNEL_COMMON::CComNEMsg;
using VARNEL_FUZZ::Input;
using VARNEL_FUZZ::KeptLog;
using VARNEL_TEST::ExactText;

namespace {

constexpr int MOST_STEPS = 200;
constexpr size_t LONG_TEXT = 1 << 16;

// The text that was read last, and the pieces appended since.
class CommandModel {
 public:
  size_t Size() const { return m_merged.size() + m_added.size(); }

  void Set(const std::string& text) {
    if (text.empty()) return;
    m_merged = text;
    m_added.clear();
  }

  void Add(const std::string& text) { m_added += text; }

  // Pieces are written after the first NUL-terminated part, and the length stays.
  const std::string& Get() {
    if (m_added.empty()) return m_merged;
    const size_t size = Size();
    m_merged = m_merged.c_str() + m_added;
    m_merged.resize(size);
    m_added.clear();
    return m_merged;
  }

  int AddSn(unsigned short number) {
    const std::string text = Get().c_str();
    const size_t end = text.find(";\r\n");
    if (end == std::string::npos || text.find(';', end + 1) != std::string::npos) return 0;
    m_merged[end + 1] = '\0';
    m_merged[end + 2] = static_cast<char>(number & 0xFF);
    return 1;
  }

  void Empty() { *this = CommandModel(); }

 private:
  std::string m_merged, m_added;
};

class Command {
 public:
  void Step(Input& input) {
    const unsigned char kind = input.Byte();
    if (m_model.Size() > LONG_TEXT) return Empty();
    switch (kind % 9) {
      case 0:
        return Set(input.Bytes(input.Byte()).c_str());
      case 1:
      case 2:
        return Add(input.Bytes(input.Byte()).c_str());
      case 3:
        return AddOwn(input.Number());
      case 4:
        return SetToOwn(input.Number());
      case 5:
        return Copy(kind);
      case 6:
        return AddSn(static_cast<unsigned short>(input.Number()));
      case 7:
        return Read();
      default:
        return Empty();
    }
  }

  void Read() {
    const std::string& expected = m_model.Get();
    const char* text = m_command->GetMsg();
    FUZZ_CHECK(std::equal(expected.begin(), expected.end(), text));
    FUZZ_CHECK(text[expected.size()] == '\0');
  }

  void Check() const { FUZZ_CHECK(m_command->GetMsgLen() == m_model.Size()); }

 private:
  void Set(const std::string& text) {
    m_command->SetMsg(ExactText(text));
    m_model.Set(text);
  }

  void Add(const std::string& text) {
    m_command->AddMsg(ExactText(text));
    m_model.Add(text);
  }

  // Part of the object's own text, from a position on.
  std::string Own(size_t at, const char*& own) {
    own = m_command->GetMsg();
    const std::string text = m_model.Get().c_str();
    at %= text.size() + 1;
    own += at;
    return text.substr(at);
  }

  void AddOwn(size_t at) {
    const char* own;
    const std::string text = Own(at, own);
    m_command->AddMsg(own);
    m_model.Add(text);
  }

  void SetToOwn(size_t at) {
    const char* own;
    const std::string text = Own(at, own);
    m_command->SetMsg(own);
    m_model.Set(text);
  }

  // Continues with a copy, or with an assigned object that had a text before.
  void Copy(unsigned char kind) {
    std::unique_ptr<CCmdStr> copy;
    const std::string text = m_model.Get().c_str();
    m_model.Empty();
    if (kind >= 128) {
      copy = std::make_unique<CCmdStr>(*m_command);
    } else {
      copy = std::make_unique<CCmdStr>();
      copy->SetMsg("before");
      m_model.Set("before");
      *copy = *m_command;
    }
    m_model.Set(text);
    m_command = std::move(copy);
  }

  void AddSn(unsigned short number) { FUZZ_CHECK(m_command->AddSnMML(number) == m_model.AddSn(number)); }

  void Empty() {
    m_command->EmptyMsg();
    m_model.Empty();
  }

  std::unique_ptr<CCmdStr> m_command = std::make_unique<CCmdStr>();
  CommandModel m_model;
};

// A plain CComNEMsg: the body as a string, the size of the buffer as a number, and how many warnings there were.
struct MessageModel {
  static constexpr size_t LONGEST = 65534;

  std::string body;
  size_t size = 1024;
  size_t warnings = 0;

  void Set(const std::string& data) {
    warnings += data.size() > LONGEST ? 1U : 0U;
    body = data.substr(0, LONGEST);
    if (size < body.size() + 1) size = body.size() + 1024;
  }

  void Add(const std::string& data) {
    warnings += body.size() + data.size() > LONGEST ? 1U : 0U;
    const std::string fitting = data.substr(0, LONGEST - body.size());
    if (fitting.empty()) return;
    body += fitting;
    if (size < body.size() + 1) size = body.size() + 1024;
  }

  void SetBufLen(size_t length) {
    warnings += length > LONGEST ? 1U : 0U;
    size = std::max(size, std::min(length, LONGEST));
  }
};

class Body {
 public:
  void Step(Input& input) {
    switch (input.Byte() % 7) {
      case 0:
        return Set(Data(input));
      case 1:
      case 2:
        return Add(Data(input));
      case 3:
        return AddOwn(input.Number());
      case 4:
        return SetToOwn(input.Number());
      case 5:
        return Resize(Length(input));
      default:
        return Replace(input.Number());
    }
  }

  void Check() const {
    FUZZ_CHECK(m_message->usMsgLen == m_model.body.size());
    FUZZ_CHECK(m_message->m_nMsgBufSize == m_model.size);
    FUZZ_CHECK(std::equal(m_model.body.begin(), m_model.body.end(), m_message->m_pMsg));
    FUZZ_CHECK(m_message->m_pMsg[m_model.body.size()] == '\0');
    FUZZ_CHECK(KeptLog().size() == m_model.warnings);
  }

 private:
  static size_t Length(Input& input) {
    constexpr size_t EDGES[] = {0, 1, 1022, 1023, 1024, 1025, 2048, 65533, 65534, 65535, 66558, 70000};
    const size_t choice = input.Byte();
    if (choice < std::size(EDGES)) return EDGES[choice];
    return choice < 32 ? input.Number() : choice;
  }

  // Some bytes repeated up to a length.
  static std::string Data(Input& input) {
    std::string data(Length(input), '\0');
    const std::string bytes = input.Bytes(8) + '.';
    for (size_t i = 0; i < data.size(); ++i)
      data[i] = bytes[i % bytes.size()];
    return data;
  }

  void Set(const std::string& data) {
    m_message->SetMsg(data.data(), static_cast<unsigned int>(data.size()));
    m_model.Set(data);
  }

  void Add(const std::string& data) {
    m_message->AddMsg(data.data(), static_cast<unsigned int>(data.size()));
    m_model.Add(data);
  }

  void AddOwn(size_t at) {
    at %= m_model.body.size() + 1;
    const std::string part = m_model.body.substr(at);
    m_message->AddMsg(m_message->m_pMsg + at, static_cast<unsigned int>(part.size()));
    m_model.Add(part);
  }

  void SetToOwn(size_t at) {
    at %= m_model.body.size() + 1;
    const std::string part = m_model.body.substr(at);
    m_message->SetMsg(m_message->m_pMsg + at, static_cast<unsigned int>(part.size()));
    m_model.Set(part);
  }

  void Resize(size_t length) {
    m_message->SetBufLen(static_cast<unsigned int>(length));
    m_model.SetBufLen(length);
  }

  // Continues with an empty message, a copy, or an assigned one.
  void Replace(size_t choice) {
    std::unique_ptr<CComNEMsg> next;
    if (choice % 4 == 0) {
      m_message->EmptyMsg();
      m_model.body.clear();
      FUZZ_CHECK(std::all_of(m_message->m_pMsg, m_message->m_pMsg + m_model.size, [](char c) { return c == '\0'; }));
      return;
    }
    if (choice % 4 == 1) {
      next = std::make_unique<CComNEMsg>(*m_message);
      m_model.size = 1024;
    } else {
      next = std::make_unique<CComNEMsg>(static_cast<unsigned int>(choice));
      m_model.size = std::min(choice, MessageModel::LONGEST);
      *next = *m_message;
    }
    m_model.Set(std::string(m_model.body));
    m_message = std::move(next);
  }

  std::unique_ptr<CComNEMsg> m_message = std::make_unique<CComNEMsg>(0);
  MessageModel m_model;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  KeptLog().clear();
  const bool isCommand = input.Byte() % 2 == 0;
  Command command;
  Body body;
  for (int step = 0; step < MOST_STEPS && !input.IsEmpty(); ++step) {
    if (isCommand) {
      command.Step(input);
      command.Check();
    } else {
      body.Step(input);
      body.Check();
    }
  }
  command.Read();
  return 0;
}

// All short sequences of operations, whose bytes are the lengths and positions as well.
void VARNEL_FUZZ::RunGenerated(Runner run) {
  for (const char kind : {'\0', '\1'}) {
    for (const std::string& steps : VARNEL_TEST::AllTexts(std::string("\0\1\2\3\4\5\6\7\10\205a;", 12), 4))
      run(kind + steps);
  }
}

#include "operations.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "software_file.h"
#include "varnel_common.h"

namespace VARNEL_TEST {

namespace {

using namespace VARNEL_COMMON;

// Longer than the text that a std::string stores without an allocation.
const std::string LONG(300, 'w');
constexpr unsigned int MML_ELEMENT = 7;
constexpr unsigned int TL1_ELEMENT = 0x1000001;
constexpr size_t LONGEST_COMMAND = 10485760;

State Show(CCmdStr& command) {
  return {std::to_string(command.GetMsgLen()), command.GetMsg()};
}

State Show(const CComNEHead& head) {
  return {std::to_string(head.ulHeadWord0) + ' ' + std::to_string(head.ulHeadWord1) + ' ' +
          std::to_string(head.usHeadShort) + ' ' + std::to_string(head.ulHeadWord2)};
}

State Show(const CComNEMsg& message) {
  State state = Show(static_cast<const CComNEHead&>(message));
  state.emplace_back(message.m_pMsg, message.usMsgLen);
  return state;
}

State ShowBase(CEvtMsg& event) {
  return {event.m_strEvtKey, std::to_string(event.m_dwUserData1), std::to_string(event.m_dwNEID), event.m_cmd.GetMsg()};
}

State Show(CEvtMsg& event) {
  return ShowBase(event);
}

template <typename Guage>
State ShowGuage(Guage& event) {
  State state = ShowBase(event);
  state.push_back(std::to_string(event.m_dwDoneNum) + '/' + std::to_string(event.m_dwTotalNum));
  return state;
}
State Show(CVNPackGuageEvt& event) {
  return ShowGuage(event);
}
State Show(CVNScriptFileGuageEvt& event) {
  return ShowGuage(event);
}

State Show(CVNScriptFileEndEvt& event) {
  State state = ShowBase(event);
  state.insert(state.end(), {event.m_strResult, event.m_strResultItem, event.m_strResultText,
                             std::to_string(event.m_dwResultCode), std::to_string(event.m_dwExtra)});
  return state;
}

State Show(const CPkgFile& package) {
  State state{package.m_strFilePath};
  for (const SOFT_INFO* entry : package.m_lstSoftInfo)
    state.push_back(entry->strColumn1 + ':' + entry->strColumn2 + ':' + std::to_string(entry->uiColumn5));
  return state;
}

State Show(const CTL1NEMsgParse& parser) {
  return {parser.m_strNEMsg,      parser.m_strSID,
          parser.m_strDate,       parser.m_strTime,
          parser.m_strEcho,       parser.m_strRspLine,
          parser.m_strVerb,       parser.m_strTextBlock,
          parser.m_strCtag,       parser.m_strAtag,
          parser.m_strRetRspCode, std::to_string(parser.m_nMsgType) + ' ' + std::to_string(parser.m_nMsgStartPos)};
}

// Arguments and results of functions.
struct Outputs {
  std::string a = "old a", b = "old b", c = "old c";
  unsigned int number = 77, other = 78;
  unsigned short small = 79, slot = 80;
  std::vector<std::string> list{"old"};
};

State Show(const Outputs& outputs) {
  State state{outputs.a,
              outputs.b,
              outputs.c,
              std::to_string(outputs.number),
              std::to_string(outputs.other),
              std::to_string(outputs.small),
              std::to_string(outputs.slot)};
  state.insert(state.end(), outputs.list.begin(), outputs.list.end());
  return state;
}

// The state of an object in a trial; by value if it can be copied.
template <typename Object>
using Make = std::function<std::unique_ptr<Object>()>;

class Table {
 public:
  template <typename Object, typename Run>
  void Add(const std::string& name, Make<Object> make, Run run, Promise promise = Promise::Whole) {
    const auto prepare = [make, run] {
      const std::shared_ptr<Object> object = make();
      return Trial{[object, run] { run(*object); }, [object] { return Show(*object); }};
    };
    m_operations.push_back({name, prepare, promise});
  }

  // A function of outputs and results.
  template <typename Run>
  void Add(const std::string& name, Run run, Promise promise = Promise::Whole) {
    Add<Outputs>(
        name, [] { return std::make_unique<Outputs>(); }, run, promise);
  }

  std::vector<Operation> Take() { return std::move(m_operations); }

 private:
  std::vector<Operation> m_operations;
};

std::unique_ptr<CCmdStr> MakeCommand() {
  auto command = std::make_unique<CCmdStr>();
  command->SetMsg("RTRV-ALM-ALL:;\r\n");
  return command;
}

std::unique_ptr<CCmdStr> MakeCommandInPieces() {
  auto command = MakeCommand();
  for (int i = 0; i < 5; ++i)
    command->AddMsg("a piece of fifty characters, more or less, appended");
  return command;
}

void AddCommands(Table& table) {
  for (const auto& make : {MakeCommand, MakeCommandInPieces}) {
    table.Add<CCmdStr>("CCmdStr::SetMsg", make, [](CCmdStr& command) { command.SetMsg(LONG.c_str()); });
    table.Add<CCmdStr>("CCmdStr::AddMsg", make, [](CCmdStr& command) { command.AddMsg(LONG.c_str()); });
    table.Add<CCmdStr>("CCmdStr::GetMsg", make, [](CCmdStr& command) { command.GetMsg(); });
    table.Add<CCmdStr>("CCmdStr::GetMsgLen", make, [](const CCmdStr& command) { return command.GetMsgLen(); });
    table.Add<CCmdStr>("CCmdStr::EmptyMsg", make, [](CCmdStr& command) { command.EmptyMsg(); });
    table.Add<CCmdStr>("CCmdStr::AddSnMML", make, [](CCmdStr& command) { command.AddSnMML(0x4142); });
    table.Add<CCmdStr>("CCmdStr::CCmdStr", make, [](CCmdStr& command) { const CCmdStr copy(command); });
    table.Add<CCmdStr>("CCmdStr::~CCmdStr", make, [](CCmdStr& /*command*/) { const CCmdStr empty; });
    table.Add<CCmdStr>("CCmdStr::operator=", make, [](CCmdStr& command) {
      CCmdStr other;
      other.AddMsg("other");
      other.AddMsg(LONG.c_str());
      command = other;
    });
  }
  const std::string tooLong(LONGEST_COMMAND + 1, 'x');
  table.Add<CCmdStr>("CCmdStr::SetMsg", MakeCommand, [tooLong](CCmdStr& command) { command.SetMsg(tooLong.c_str()); });
  table.Add<CCmdStr>("CCmdStr::AddMsg", MakeCommand, [tooLong](CCmdStr& command) { command.AddMsg(tooLong.c_str()); });
}

std::unique_ptr<CComNEMsg> MakeMessage() {
  auto message = std::make_unique<CComNEMsg>(64);
  message->EmptyMsg();
  message->ulHeadWord0 = 0x01020304;
  message->SetMsg("a body of which two have no room in a buffer of 64", 50);
  return message;
}

void AddMessages(Table& table) {
  const auto make = MakeMessage;
  for (const std::string& data : {std::string("new"), LONG, std::string(70000, 'x')}) {
    const auto size = static_cast<unsigned int>(data.size());
    table.Add<CComNEMsg>("CComNEMsg::SetMsg", make, [=](CComNEMsg& message) { message.SetMsg(data.data(), size); });
    table.Add<CComNEMsg>("CComNEMsg::AddMsg", make, [=](CComNEMsg& message) { message.AddMsg(data.data(), size); });
    table.Add<CComNEMsg>("CComNEMsg::SetBufLen", make, [=](CComNEMsg& message) { message.SetBufLen(size); });
  }
  table.Add<CComNEMsg>("CComNEMsg::SetMsg", make, [](CComNEMsg& message) { message.SetMsg(message.m_pMsg + 1, 10); });
  table.Add<CComNEMsg>("CComNEMsg::AddMsg", make,
                       [](CComNEMsg& message) { message.AddMsg(message.m_pMsg, message.usMsgLen); });
  table.Add<CComNEMsg>("CComNEMsg::EmptyMsg", make, [](CComNEMsg& message) { message.EmptyMsg(); });
  table.Add<CComNEMsg>("CComNEMsg::CComNEMsg", make, [](CComNEMsg& message) { const CComNEMsg copy(message); });
  table.Add<CComNEMsg>("CComNEMsg::~CComNEMsg", make, [](CComNEMsg& /*message*/) { const CComNEMsg empty(0); });
  table.Add<CComNEMsg>("CComNEMsg::operator=", make, [](CComNEMsg& message) {
    CComNEMsg other(1000);
    other.EmptyMsg();
    other.ulHeadWord0 = 5;
    other.SetMsg(LONG.data(), static_cast<unsigned int>(LONG.size()));
    message = other;
  });
  table.Add<CComNEMsg>("CComNEHead::ToHostOrder", make, [](CComNEMsg& message) {
    message.ToHostOrder();
    message.ToHostOrder();
  });
  table.Add<CComNEMsg>("CComNEHead::ToNetOrder", make, [](CComNEMsg& message) {
    message.ToNetOrder();
    message.ToNetOrder();
  });
  table.Add<CComNEHead>("CComNEHead::operator=", std::make_unique<CComNEHead>, [](CComNEHead& head) {
    CComNEHead other;
    other.ulHeadWord0 = 5;
    head = other;
  });
  table.Add<CComNEHead>("CComNEHead::CComNEHead", std::make_unique<CComNEHead>,
                        [](CComNEHead& /*head*/) { const CComNEHead other; });
}

template <typename Event>
Make<Event> MakeEvent(unsigned int element) {
  return [element] {
    auto event = std::make_unique<Event>();
    event->m_strEvtKey = "a key that is longer than sixteen bytes";
    event->m_dwUserData1 = 3;
    event->m_dwNEID = element;
    event->m_cmd.SetMsg("LOAD:");
    event->m_cmd.AddMsg(LONG.c_str());
    return event;
  };
}

// The operations of all events. Each class recognises its report.
template <typename Event>
void AddEvent(Table& table, const std::string& name, const std::vector<std::string>& mmlReports) {
  for (const std::string& report : mmlReports) {
    table.Add<Event>(name + "::HandleReport", MakeEvent<Event>(MML_ELEMENT),
                     [report](Event& event) { event.HandleReport(report.c_str()); });
  }
  table.Add<Event>(name + "::Duplicate", MakeEvent<Event>(MML_ELEMENT), [](Event& event) { delete event.Duplicate(); });
  table.Add<Event>(name + "::" + name, std::make_unique<Event>, [](Event& /*event*/) { const Event other; });
  table.Add<Event>(name + "::~" + name, MakeEvent<Event>(MML_ELEMENT), [](Event& /*event*/) { const Event other; });
}

void AddEvents(Table& table) {
  const std::string copyProgress = "EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM " + std::string(40, '0') + "3 12 x";
  const std::string completed = "status=completed done=3 total=12 " + LONG;
  const std::string loading = "REPT EVT PROGRESS TRANSFEREDFILES=" + std::string(40, '0') + "3,TOTALNUM=12,";
  const std::string running = "EVENT CAM RUN PROGRESS TOTAL    SUCC   = 12 3 x";
  const std::string end = "EVENT CAM RUN END RSP ";
  const std::string success = end + "SUCCESS" + LONG + " 5 " + LONG;
  const std::string failure = end + "FAIL" + LONG + " 5 " + LONG + ' ' + LONG;

  AddEvent<CEvtMsg>(table, "CEvtMsg", {loading});
  AddEvent<CVNPackGuageEvt>(table, "CVNPackGuageEvt", {copyProgress, completed});
  AddEvent<CVNScriptFileGuageEvt>(table, "CVNScriptFileGuageEvt", {running});
  AddEvent<CVNScriptFileEndEvt>(table, "CVNScriptFileEndEvt", {success, failure});

  table.Add<CEvtMsg>("CEvtMsg::IsMyEvt", MakeEvent<CEvtMsg>(MML_ELEMENT),
                     [loading](CEvtMsg& event) { event.IsMyEvt(loading.c_str()); });
  struct Copied : CEvtMsg {
    using CEvtMsg::CopyMembersTo;
  };
  table.Add<Copied>("CEvtMsg::CopyMembersTo", MakeEvent<Copied>(MML_ELEMENT), [](Copied& event) {
    CEvtMsg copy;
    event.CopyMembersTo(copy);
  });
  const auto package = MakeEvent<CVNPackGuageEvt>(TL1_ELEMENT);
  table.Add<CVNPackGuageEvt>("CVNPackGuageEvt::HandleReport", package,
                             [=](CVNPackGuageEvt& event) { event.HandleReport(loading.c_str()); });
  table.Add<CVNPackGuageEvt>("CVNPackGuageEvt::HandleTL1LReport", package,
                             [=](CVNPackGuageEvt& event) { event.HandleTL1LReport(loading.c_str()); });
  table.Add<CVNPackGuageEvt>("CVNPackGuageEvt::HandleMMLReport", package,
                             [=](CVNPackGuageEvt& event) { event.HandleMMLReport(completed.c_str()); });
  table.Add<CVNPackGuageEvt>("CVNPackGuageEvt::GetGuage", package,
                             [](const CVNPackGuageEvt& event) { return event.GetGuage(); });
  const auto script = MakeEvent<CVNScriptFileGuageEvt>(MML_ELEMENT);
  table.Add<CVNScriptFileGuageEvt>("CVNScriptFileGuageEvt::HandleMMLReport", script,
                                   [=](CVNScriptFileGuageEvt& event) { event.HandleMMLReport(running.c_str()); });
  table.Add<CVNScriptFileGuageEvt>("CVNScriptFileGuageEvt::GetGuage", script,
                                   [](const CVNScriptFileGuageEvt& event) { return event.GetGuage(); });
  const auto ended = MakeEvent<CVNScriptFileEndEvt>(MML_ELEMENT);
  for (const std::string& report : {success, failure}) {
    table.Add<CVNScriptFileEndEvt>("CVNScriptFileEndEvt::HandleMMLReport", ended,
                                   [=](CVNScriptFileEndEvt& event) { event.HandleMMLReport(report.c_str()); });
  }
}

void AddParser(Table& table) {
  const std::string header = "echo " + LONG + "\r\n\n   " + LONG + " 2020-01-01 12:34:56\r\n";
  const std::string response = header + "M  " + LONG + " COMPLD" + LONG + "\r\n   \"" + LONG + "\"\r\n;";
  const std::string autonomous = header + "*C " + LONG + " REPT ALM M" + LONG + "\r\n   \"" + LONG + "\"\r\n;";
  const std::string unfinished = header + "M  7";
  const std::string acknowledgement = "IP" + LONG + " " + LONG + "\r\n<";
  for (const std::string& message : {response, autonomous, unfinished, acknowledgement, std::string("\r\n>")}) {
    const auto make = [message] { return std::make_unique<CTL1NEMsgParse>(message); };
    table.Add<CTL1NEMsgParse>(
        "CTL1NEMsgParse::NEMsgParse", make, [](CTL1NEMsgParse& parser) { parser.NEMsgParse(); }, Promise::Usable);
    table.Add<CTL1NEMsgParse>(
        "CTL1NEMsgParse::ParseMsgEndFlg", make, [response](CTL1NEMsgParse& parser) { parser.ParseMsgEndFlg(response); },
        Promise::Usable);
  }
  const auto make = [response] {
    auto parser = std::make_unique<CTL1NEMsgParse>(response);
    parser->NEMsgParse();
    return parser;
  };
  const auto add = [&](const char* name, auto run) {
    table.Add<CTL1NEMsgParse>(std::string("CTL1NEMsgParse::") + name, make, run);
  };
  add("ParseMsgEndFlg", [](CTL1NEMsgParse& parser) { parser.ParseMsgEndFlg(""); });
  add("InitAllPrivate", [](CTL1NEMsgParse& parser) { parser.InitAllPrivate(); });
  add("CTL1NEMsgParse", [response](CTL1NEMsgParse& /*parser*/) { const CTL1NEMsgParse other(response); });
  add("GetRetRspCode", [](const CTL1NEMsgParse& parser) { return parser.GetRetRspCode().size(); });
  add("GetCtage", [](const CTL1NEMsgParse& parser) { return parser.GetCtage().size(); });
  add("GetSID", [](const CTL1NEMsgParse& parser) { return parser.GetSID().size(); });
  add("GetTextBlock", [](const CTL1NEMsgParse& parser) { return parser.GetTextBlock().size(); });
  add("GetNEMsgType", [](const CTL1NEMsgParse& parser) { return parser.GetNEMsgType(); });
  add("GetMsgStartPos", [](const CTL1NEMsgParse& parser) { return parser.GetMsgStartPos(); });
}

void AddStrings(Table& table) {
  const std::string words = " " + LONG + "  \t" + LONG + " ";
  const auto with = [](const std::string& text, void (*change)(std::string&)) {
    return [=](Outputs& out) {
      std::string changed = text;
      change(changed);
      out.a = std::move(changed);
    };
  };
  table.Add("StrTrim", with(words, StrTrim));
  table.Add("StrTrimLeft", with(words, StrTrimLeft));
  table.Add("StrTrimRight", with(words, StrTrimRight));
  table.Add("StrCollapse", with(words, StrCollapse));
  table.Add("toUpperCase", with(words, toUpperCase));
  table.Add("ReplaceString", [](Outputs& out) { ReplaceString(out.a, "old", LONG); });
  table.Add("replaceEnterWithBlank", [=](Outputs& out) { out.a = replaceEnterWithBlank(words.c_str()); });
  table.Add("strmcmp", [=](Outputs& out) { out.number = strmcmp(words.c_str(), "*w*") != 0 ? 1 : 0; });
  table.Add("strmcmpnocase", [=](Outputs& out) {
    const std::string pattern = "*" + LONG + "*";
    out.number = strmcmpnocase((std::string(50000, 'w') + "x").c_str(), pattern.c_str()) != 0 ? 1 : 0;
  });
  table.Add("SplitStringByChar", [=](Outputs& out) { SplitStringByChar(words.c_str(), ' ', out.list); });
  table.Add("GetTL1AttrbuteString",
            [](Outputs& out) { GetTL1AttrbuteString(("A=" + LONG + ",").c_str(), "A=", out.a); });
  table.Add("ConvertFromString<unsigned int>", [](Outputs& out) { ConvertFromString("5", out.number); });
  table.Add("ConvertFromString<unsigned short>", [](Outputs& out) { ConvertFromString("5", out.small); });
  table.Add("ConvertFromString<char>", [](Outputs& out) { ConvertFromString("5", out.a[0]); });
  table.Add("freeArray", [](Outputs& out) {
    auto** array = static_cast<void**>(std::calloc(2, sizeof(void*)));
    array[0] = std::malloc(8);
    freeArray(array);
    out.number = 0;
  });
}

void AddPathsAndTimes(Table& table, const std::string& folder) {
  const std::string path = folder + "\\" + LONG + ".x/" + LONG + ".bin";
  table.Add("SplitFilePathAndFileName", [=](Outputs& out) { SplitFilePathAndFileName(path, out.a, out.b); });
  table.Add("GetFileLeftNameAndExName", [=](Outputs& out) { GetFileLeftNameAndExName(path + LONG, out.a, out.b); });
  table.Add("VerifyFilePathAndName", [=](Outputs& out) { out.number = VerifyFilePathAndName(path) ? 1 : 0; });
  for (const std::string& name : {folder, folder + "/absent", std::string(5000, '/')})
    table.Add("ToAbsPath", [=](Outputs& out) { out.a = ToAbsPath(name); });
  const std::string absent = folder + "/absent";
  table.Add("VNRemoveFile", [=](Outputs& out) { out.number = static_cast<unsigned int>(VNRemoveFile(absent)); });
  table.Add("VNRemoveDir", [=](Outputs& out) { out.number = static_cast<unsigned int>(VNRemoveDir(absent)); });
  table.Add("GetCurTimeMilSec", [](Outputs& out) { out.number = GetCurTimeMilSec() > 0 ? 1 : 0; });
  table.Add("IsTimerReach", [](Outputs& out) { out.number = IsTimerReach(9, 11, 10) ? 1 : 0; });
  table.Add("GetCurDateFormated",
            [](Outputs& out) { out.number = static_cast<unsigned>(GetCurDateFormated().size()); });
  table.Add("GetCurTimeFormated",
            [](Outputs& out) { out.number = static_cast<unsigned>(GetCurTimeFormated().size()); });
  table.Add("MakeTimeFormated", [](Outputs& out) { out.a = MakeTimeFormated(1600000000); });
}

void AddSlots(Table& table) {
  table.Add("ParseTL1SlotID", [](Outputs& out) { ParseTL1SlotID("FAC-1-SLOT-3-5", out.small, out.slot); });
  table.Add("ParseMMLSlotID", [](Outputs& out) { ParseMMLSlotID("3-5", out.small, out.slot); });
  table.Add("HexStr2Int", [](Outputs& out) { out.number = HexStr2Int("0x1f"); });
  table.Add("IsZepv2", [](Outputs& out) { out.number = IsZepv2(52100) ? 1 : 0; });
  table.Add("IsZep08", [](Outputs& out) { out.number = IsZep08(50800) ? 1 : 0; });
  table.Add("IsExistShelfID", [](Outputs& out) { out.number = IsExistShelfID("3-5") ? 1 : 0; });
  table.Add("WSlotIDi2str", [](Outputs& out) { out.a = WSlotIDi2str(0x0305); });
  table.Add("WSlotIDi2Hexstr", [](Outputs& out) { out.a = WSlotIDi2Hexstr(0x0a1f); });
  table.Add("WSlotIDstr2i", [](Outputs& out) { out.number = WSlotIDstr2i("3-5"); });
  table.Add("convertSlot2strDC", [](Outputs& out) { out.a = convertSlot2strDC(50000, 0x0305); });
  table.Add("convertSlotDC", [](Outputs& out) { out.number = convertSlotDC("305"); });
  table.Add("GetNESlotID", [](Outputs& out) { out.number = GetNESlotID(305); });
  table.Add("IsTL1NeID", [](Outputs& out) { out.number = IsTL1NeID(TL1_ELEMENT) ? 1 : 0; });
  table.Add("IsKorvaneNE", [](Outputs& out) { out.number = IsKorvaneNE(50000, "kva4210" + LONG) ? 1 : 0; });
  table.Add("IsSccBdName", [](Outputs& out) { out.number = IsSccBdName("scc" + LONG) ? 1 : 0; });
}

std::string Description() {
  std::string text = "\n[File Description]\n";
  for (int i = 0; i < 5; ++i)
    text += std::string(100, static_cast<char>('a' + i)) + ":" + std::string(100, 'k') + ":3:4:" + std::to_string(i) +
            ":6:7:8\n";
  return text + "[END]\n";
}

void Write(const std::string& path, const std::string& bytes) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
  if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) std::abort();
}

void AddHeadReaders(Table& table, const std::string& file) {
  table.Add(
      "readZEPFileHead",
      [=](Outputs& out) {
        ZEP_FILE_HEAD head;
        out.small = readZEPFileHead(file, head, out.a, out.b, out.number, out.other) == 0 ? 1 : 0;
      },
      Promise::EachPart);
  table.Add(
      "CheckZEPFileHead", [=](Outputs& out) { CheckZEPFileHead(file, out.number, out.other, out.a, out.small, out.b); },
      Promise::EachPart);
  table.Add(
      "CheckZEPFileHead",
      [=](Outputs& out) {
        int type = 0;
        CheckZEPFileHead(file, type, out.a, out.b);
        out.number = static_cast<unsigned int>(type);
      },
      Promise::EachPart);
  table.Add("isColdPatch", [=](Outputs& out) { out.number = isColdPatch(file) ? 1 : 0; });
}

void AddLineReader(Table& table, const std::string& file) {
  const auto read = [=](Outputs& out) {
    Vnifstream stream(file);
    char line[200];
    std::string text;
    while (stream.GetLine(line, sizeof line))
      text += line;
    out.a = std::move(text);
  };
  table.Add("Vnifstream::Vnifstream", read);
  table.Add("Vnifstream::~Vnifstream", read);
  table.Add("Vnifstream::GetLine", read);
  table.Add("Vnifstream::ReadFile", [=](Outputs& out) {
    Vnifstream stream("");
    out.number = stream.ReadFile(file) ? 1 : 0;
  });
  table.Add("Vnifstream::operator=", [=](Outputs& out) {
    Vnifstream stream("");
    const Vnifstream none("");
    stream = none;
    out.number = stream.ReadFile(file) ? 1 : 0;
  });
}

void AddPackage(Table& table, const std::string& file) {
  const auto make = [file] { return std::make_unique<CPkgFile>(file); };
  table.Add<CPkgFile>(
      "CPkgFile::ParsePkgFile", make, [](CPkgFile& package) { package.ParsePkgFile(); }, Promise::Entries);
  table.Add<CPkgFile>(
      "CPkgFile::ParsePkgSoftInfo", make, [file](CPkgFile& package) { package.ParsePkgSoftInfo(file); },
      Promise::Entries);
  table.Add<CPkgFile>("CPkgFile::CPkgFile", make, [file](CPkgFile& /*package*/) { const CPkgFile other(file + LONG); });
  table.Add<CPkgFile>("CPkgFile::~CPkgFile", make, [](CPkgFile& /*package*/) { const CPkgFile other(""); });
  table.Add<CPkgFile>("CPkgFile::ClearSoftInfo", make, [](CPkgFile& package) { package.ClearSoftInfo(); });
}

void AddFiles(Table& table, const std::string& folder) {
  SoftwareFile content;
  content.gaps = {3000, 0, 0, 0};
  content.fileType = 2;
  content.extension = 0x0102;
  content.skipped = std::string(2000, 's');
  content.link = "sample -> " + LONG;
  content.version = LONG;
  content.payload = Description() + "[COLDPATCH]\n";
  const std::string path = folder + "/software";
  Write(path, content.Bytes());

  for (const std::string& file : {path, folder + "/absent", std::string()}) {
    AddHeadReaders(table, file);
    AddLineReader(table, file);
    AddPackage(table, file);
  }
}

void AddHeads(Table& table) {
  table.Add("GetUCCheckSum", [](Outputs& out) { out.number = GetUCCheckSum("abc", 3); });
  table.Add("ZEP_DIR_HEAD::ToHostOrder", [](Outputs& /*out*/) {
    ZEP_DIR_HEAD head = {};
    head.ToHostOrder();
  });
  table.Add("ZEP_FILE_HEAD::ToHostOrder", [](Outputs& /*out*/) {
    ZEP_FILE_HEAD head = {};
    head.ToHostOrder();
  });
}

}  // namespace

std::vector<Operation> EveryOperation(const std::string& folder) {
  Table table;
  AddCommands(table);
  AddMessages(table);
  AddEvents(table);
  AddParser(table);
  AddStrings(table);
  AddPathsAndTimes(table, folder);
  AddSlots(table);
  AddFiles(table, folder);
  AddHeads(table);
  return table.Take();
}

}  // namespace VARNEL_TEST

#ifndef VARNEL_EVTMSG_H
#define VARNEL_EVTMSG_H

#include <string>

#include "cmdstr.h"
#include "varnel_export.h"

/// @file
/// Events: each object represents one kind of report that is expected from a network element.
///
/// Pass every incoming report to IsMyEvt() of each waiting object; pass it to HandleReport() of the object that claims
/// it, which recognises the shape of the report and reads its numbers. Nothing is allocated until a shape is
/// recognised.

namespace VARNEL_COMMON {

/// Base of all events: pass every report to IsMyEvt(), and the one that it claims to HandleReport().
///
/// The members are public: the owner sets what is expected and reads what was found. A report is a NUL-terminated text
/// of any bytes; for a bad one the result is false and nothing is logged. One object belongs to one thread at a time.
/// Memory exhaustion throws std::bad_alloc, and the result members stay as they were.
class VARNEL_API CEvtMsg {
 public:
  /// All numbers 0, all texts empty.
  CEvtMsg();
  CEvtMsg(const CEvtMsg&) = delete;             ///< Duplicate() copies
  CEvtMsg& operator=(const CEvtMsg&) = delete;  ///< Duplicate() copies
  virtual ~CEvtMsg();                           ///< wipes the text of m_cmd

  /// Returns whether a report is the expected one, by m_strEvtKey up to its first NUL.
  ///
  /// @param report  may be null.
  /// @return true when the key matches the whole report as a wildcard pattern (see strmcmp()) or occurs in it
  ///         literally: an empty key matches every report, and "EVT 1" also "EVT 12". False for a null report.
  virtual bool IsMyEvt(const char* report);

  /// Reads a report; this class ignores it.
  ///
  /// @param report  may be null.
  /// @return true.
  virtual bool HandleReport(const char* report);

  /// Copies the object.
  ///
  /// @return a new object of the same class with every member copied, m_cmd up to the first NUL of its text. The caller
  ///         owns it and deletes it.
  virtual CEvtMsg* Duplicate();

  std::string m_strEvtKey;     ///< identifies the report: a pattern with "*", or a part of the text
  unsigned int m_dwUserData1;  ///< the owner's; only copied here
  unsigned int m_dwUserData2;  ///< the owner's; only copied here
  unsigned int m_dwNEID;       ///< the element that reports: a TL1 element above 0xFFFFFF, else an MML element
  CCmdStr m_cmd;               ///< the command that belongs to the event; only copied here

 protected:
  /// Copies the members of this class, for Duplicate().
  ///
  /// @param copy  a fresh object; its m_cmd keeps its text if this one's is empty.
  void CopyMembersTo(CEvtMsg& copy);
};

/// Progress of loading a software package.
///
/// Numbers are decimal and read as ConvertFromString() does, sign included; what follows their digits is ignored. Those
/// after "done=" and "total=" are taken modulo 2^32.
class VARNEL_API CVNPackGuageEvt : public CEvtMsg {
 public:
  /// Both numbers 0, the rest as CEvtMsg.
  CVNPackGuageEvt();
  ~CVNPackGuageEvt() override;  ///< see CEvtMsg

  /// Reads done and total from a progress report in the language that m_dwNEID determines; 0 means MML.
  ///
  /// @param report  may be null.
  /// @return as HandleTL1LReport() for a TL1 element, as HandleMMLReport() for others.
  bool HandleReport(const char* report) override;
  CEvtMsg* Duplicate() override;

  /// Reads an MML progress report: the columns "DONE_NUM" and "TOTAL_NUM" of EVT_SFTM_CPYFILE_PROGRESS, whose values
  /// follow the first "TOTAL_NUM"; or "status=completed" with the first "done=" and the first "total=".
  ///
  /// @param report  may be null.
  /// @return true when the report is recognised and both numbers are present, in columns with a non-blank character
  ///         after them. False otherwise: a recognised report may then have set some numbers (0 without a digit,
  ///         4294967295 for a number that is too large in a column), any other changes nothing.
  bool HandleMMLReport(const char* report);

  /// Reads a TL1 progress report: FILES_DONE and FILES_TOTAL, TRANSFEREDFILES and TOTALNUM of a REPT EVT PROGRESS, or
  /// SLOTSDONE and SLOTSTTL.
  ///
  /// A value without a digit is read as 0. A missing one leaves its number unchanged: set m_dwTotalNum to 0 before each
  /// report.
  ///
  /// @param report  may be null.
  /// @return true when the shape is recognised and the total is then not 0. A report that is not recognised leaves the
  ///         numbers as they were.
  bool HandleTL1LReport(const char* report);

  /// Returns the progress in percent.
  ///
  /// @return done * 100 / total, rounded down and not limited to 100; 0 when the total is 0. Computed modulo 2^32:
  ///         wrong above 42949672 items done.
  unsigned int GetGuage() const;

  unsigned int m_dwDoneNum;   ///< files or slots done
  unsigned int m_dwTotalNum;  ///< files or slots in all
};

/// Progress of running a script file. TL1 elements do not report it.
class VARNEL_API CVNScriptFileGuageEvt : public CEvtMsg {
 public:
  /// Both numbers 0, the rest as CEvtMsg.
  CVNScriptFileGuageEvt();
  ~CVNScriptFileGuageEvt() override;  ///< see CEvtMsg

  /// Reads total and done from a progress report of an MML element.
  ///
  /// @param report  may be null.
  /// @return as HandleMMLReport(); false, with the report not looked at, for a TL1 element.
  bool HandleReport(const char* report) override;
  CEvtMsg* Duplicate() override;

  /// Reads an MML script progress report, for any m_dwNEID: two numbers, total and done, that begin 15 characters after
  /// the start of the first "TOTAL", which is the length of the column headers and their separator.
  ///
  /// @param report  may be null.
  /// @return true when the report is recognised, both numbers are present and a non-blank character follows them. False
  ///         otherwise: the numbers may then have been set in part, as by CVNPackGuageEvt::HandleMMLReport(), but not
  ///         by a report that is not recognised or ends within the 15 characters.
  bool HandleMMLReport(const char* report);

  /// Returns the progress in percent.
  ///
  /// @return as CVNPackGuageEvt::GetGuage(), but 100 for a total below ten, also before the first report.
  unsigned int GetGuage() const;

  unsigned int m_dwDoneNum;   ///< commands done
  unsigned int m_dwTotalNum;  ///< commands in all
};

/// End of a script file run. TL1 elements do not report it.
class VARNEL_API CVNScriptFileEndEvt : public CEvtMsg {
 public:
  /// All numbers 0, all texts empty.
  CVNScriptFileEndEvt();
  ~CVNScriptFileEndEvt() override;  ///< see CEvtMsg

  /// Reads the result from an end report of an MML element.
  ///
  /// @param report  may be null.
  /// @return as HandleMMLReport(); false, with the report not looked at, for a TL1 element.
  bool HandleReport(const char* report) override;
  CEvtMsg* Duplicate() override;

  /// Reads an MML end report, for any m_dwNEID: the words after its first "RSP".
  ///
  /// A report with "SUCCESS" sets result and code and leaves item and text as they were, also if it contains "FAIL"
  /// too. A report with "FAIL" sets result, code, item and text, and needs four words; its text is appended to that of
  /// an earlier report. A failed script is recognised too: compare m_strResult.
  ///
  /// @param report  may be null.
  /// @return true when the report is recognised, a script that failed included; the members are unchanged otherwise.
  bool HandleMMLReport(const char* report);

  std::string m_strResult;      ///< first word after "RSP"
  std::string m_strResultItem;  ///< third word of a failure
  std::string m_strResultText;  ///< further words of all failures read, each followed by a blank
  unsigned int m_dwResultCode;  ///< second word as a number: 0 without a digit, unchanged if it is missing
  unsigned int m_dwExtra;       ///< 0; free for the owner, only copied here
};

}  // namespace VARNEL_COMMON

#endif

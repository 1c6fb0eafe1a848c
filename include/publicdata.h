#ifndef VARNEL_PUBLICDATA_H
#define VARNEL_PUBLICDATA_H

#include <cstdint>
#include <string>

#include "varnel_export.h"

/// @file
/// NE software files, their headers and lines; types of network elements and boards.
///
/// All functions are reentrant. Memory exhaustion throws std::bad_alloc.

namespace VARNEL_COMMON {

/// First header of an NE software file: 64 bytes at the start of the file, all numbers big-endian. Read the bytes into
/// the structure, then call ToHostOrder(). Fields called carried are kept but not interpreted.
struct VARNEL_API ZEP_DIR_HEAD {
  uint32_t ulMagic;              ///< 0x51584444, the bytes "QXDD"
  uint32_t ulCheckSum;           ///< GetUCCheckSum() of bytes 8 to 59 of the header
  uint16_t usValue08;            ///< carried
  uint16_t usValue10;            ///< carried
  uint32_t ulValue12;            ///< carried
  unsigned char aucBytes16[6];   ///< carried
  uint16_t usValue22;            ///< carried
  uint16_t usValue24;            ///< carried
  uint16_t usGapLen26;           ///< the file header follows after a gap, whose length is the sum of the four
  uint32_t ulValue28;            ///< carried
  uint16_t usGapLen32;           ///< see usGapLen26
  uint16_t usGapLen34;           ///< see usGapLen26
  uint16_t usGapLen36;           ///< see usGapLen26
  unsigned char aucBytes38[22];  ///< carried
  uint32_t ulValue60;            ///< carried; outside the checksum

  /// Converts all 16- and 32-bit fields between big-endian and the machine's order, in place.
  void ToHostOrder();
};

/// Second header of an NE software file: 64 bytes after the gap, all numbers big-endian. After it follow, in this
/// order, the extension word (two bytes, for file type 2 only), a skipped area, the link text, the version text, a
/// fourth area, and the payload.
struct VARNEL_API ZEP_FILE_HEAD {
  uint32_t ulMagic;              ///< 0x51584646, the bytes "QXFF"
  uint32_t ulCheckSum;           ///< GetUCCheckSum() of bytes 8 to 59 of the header
  uint16_t usValue08;            ///< carried
  uint16_t usValue10;            ///< carried
  unsigned char aucBytes12[12];  ///< carried
  uint32_t ulValue24;            ///< carried
  uint32_t ulValue28;            ///< carried
  uint16_t usFileType;           ///< 2 means that a 16-bit extension word follows the header
  uint16_t usValue34;            ///< carried
  uint32_t ulValue36;            ///< carried
  uint32_t ulValue40;            ///< carried
  uint16_t usSkipLen;            ///< bytes skipped after the header
  uint16_t usLinkLen;            ///< bytes of the link text, at most 1023
  uint16_t usVersionLen;         ///< bytes of the version text; 0 and 65535 mean no version text
  uint16_t usTailLen;            ///< bytes of the fourth area
  unsigned char aucBytes52[8];   ///< carried
  uint32_t ulValue60;            ///< carried; outside the checksum

  /// Converts all 16- and 32-bit fields between big-endian and the machine's order, in place.
  void ToHostOrder();
};

/// Sums up bytes, as for the checksum of a header.
///
/// @param data  the bytes; may be null.
/// @param len   how many.
/// @return the sum of the bytes, each taken as 0 to 255, modulo 2^32; 0 when `data` is null or `len` is below 1.
VARNEL_API unsigned int GetUCCheckSum(const char* data, int len);

/// Reads and checks both headers of an NE software file and the texts after them. The payload is not read and may be
/// damaged although the result is 0. A stream of the host that cannot seek is read from its current position.
///
/// After a failure, outputs that were written before it keep the new value, all others the old one.
///
/// @param path           of the file, up to its first NUL.
/// @param head           the file head in the machine's order. Do not call ToHostOrder() on it again. After a failure:
///                       unchanged if the first header is bad, the bytes of the file if it ends inside this header.
/// @param linkTarget     the link text after its first "-> ", up to a NUL.
/// @param versionText    the version text up to its first "T" or NUL; unchanged if the file has none.
/// @param extWord        the extension word of a file of type 2, 0 if the file ends before it. Unchanged for other
///                       types.
/// @param payloadOffset  gap + 128 + the four lengths of the file header. It does not include the two bytes of an
///                       extension word: the payload of a file of type 2 begins 2 bytes later. Set if both headers are
///                       valid, also if a text is then refused.
/// @return 0 on success; 0x3BA00013 when the file cannot be opened; 0x3BA00B02 when it ends too soon, a magic word or
///         checksum is wrong, or the link text is longer than 1023 bytes or without "-> ". Only open failures and short
///         reads are logged. The errno in the line is that of the failing call; at the end of the file it is the value
///         that the caller left.
VARNEL_API unsigned int readZEPFileHead(const std::string& path, ZEP_FILE_HEAD& head, std::string& linkTarget,
                                        std::string& versionText, unsigned int& extWord, unsigned int& payloadOffset);

/// readZEPFileHead() with the file type instead of the whole header, for any type.
///
/// @param path           as there.
/// @param extWord        as there.
/// @param payloadOffset  as there.
/// @param linkTarget     as there.
/// @param fileType       the file type; unchanged after a failure.
/// @param versionText    as there.
/// @return as there.
VARNEL_API unsigned int CheckZEPFileHead(const std::string& path, unsigned int& extWord, unsigned int& payloadOffset,
                                         std::string& linkTarget, unsigned short& fileType, std::string& versionText);

/// readZEPFileHead() for callers that handle the usual file types only.
///
/// @param path         as there.
/// @param fileType     the file type, also one that is then refused; unchanged when readZEPFileHead() fails.
/// @param linkTarget   as there; set for a file of a refused type too.
/// @param versionText  as there; set for a file of a refused type too.
/// @return as there; 0x3BA00B02 also for a file type other than 0 to 13, 15 and 513, which is not logged.
VARNEL_API unsigned int CheckZEPFileHead(const std::string& path, int& fileType, std::string& linkTarget,
                                         std::string& versionText);

/// Reads a text file line by line. The whole file is loaded at construction; a file that is changed later is not
/// read again. A file that cannot be loaded has no lines, like an empty one and one without a size, as in /proc.
///
/// A copy shares the buffer with its source and both would release it: never destroy two copies. The buffer that the
/// target of an assignment had before is not released.
///
/// One object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc.
class VARNEL_API Vnifstream {
 public:
  /// Loads a file. It does not report failure: to notice it, construct the object with an empty path and call
  /// ReadFile().
  ///
  /// @param path  of the file, up to its first NUL.
  Vnifstream(const std::string& path);

  /// Copies position and buffer, which is then shared: see the class.
  ///
  /// @param other  the reader to copy.
  Vnifstream(const Vnifstream& other);

  /// Copies position and buffer, which is then shared: see the class.
  ///
  /// @param other  the reader to copy.
  /// @return this object.
  Vnifstream& operator=(const Vnifstream& other);

  /// Releases the buffer.
  ~Vnifstream();

  /// Loads a file; from a file of 4 GiB + n bytes, the first n. If fewer bytes than the size of the file can be read,
  /// NULs replace the others. A buffer loaded before is not released: call this only on an object constructed with an
  /// empty path.
  ///
  /// @param path  of the file, up to its first NUL.
  /// @return false when the path is empty or the file cannot be sized or opened; the object is then unchanged, and
  ///         nothing is logged.
  bool ReadFile(const std::string& path);

  /// Reads the next line, without its line feed. Only a line feed ends a line: a `\r` stays, and a NUL too.
  ///
  /// @param buf   receives the line and a NUL; contains no line after false.
  /// @param size  of `buf`, in bytes. A line of that length or more is cut to `size` - 1 bytes, the rest of it skipped.
  /// @return false at the end, when nothing is loaded, when `buf` is null or `size` is 0; the position stays. False
  ///         also when the bounded copy fails, which is logged: the line is then lost, and if a line feed ends it, the
  ///         next call returns an empty line.
  bool GetLine(char* buf, unsigned int size);

 private:
  char* m_pBuffer;
  unsigned int m_uiSize;
  unsigned int m_uiPos;
};

/// Returns whether a file is a cold patch.
///
/// @param path  of the file, up to its first NUL.
/// @return true when a line contains "[COLDPATCH]" within its first 1023 bytes and before a NUL. False is always
///         logged, and is also the result for a file that cannot be read.
VARNEL_API bool isColdPatch(const std::string& path);

/// Turns the three-digit slot number of an older element, first digit the shelf and two digits the slot, into the
/// element's slot identifier.
///
/// The identifier is (code of the first digit's character) * 32 OR (code of the second digit's character): 305 is (51
/// << 5) | 48. The third digit is ignored. Elements expect exactly this.
///
/// @param slotNumber  a slot number, not a word slot identifier.
/// @return the identifier; a number below 100 or above 999 unchanged. A bounded copy or format that fails is logged,
///         and the result is then computed from the contents of the buffers.
VARNEL_API unsigned int GetNESlotID(unsigned short slotNumber);

/// Returns whether the element with an identifier speaks TL1; others speak MML.
///
/// @param neId  the identifier.
/// @return true above 0xFFFFFF.
VARNEL_API bool IsTL1NeID(unsigned int neId);

/// Returns whether an element, by its name, belongs to the Korvane family. Elements of the second generation never do.
///
/// @param generation  its generation code, see IsZepv2().
/// @param name        matched by strmcmpnocase(); a NUL ends it.
/// @return true for a name of the family; false for an empty name.
VARNEL_API bool IsKorvaneNE(int generation, const std::string& name);

/// Returns whether a board name is that of a system-control board. Some names match anywhere ("x-SCC-9"), others only
/// as a whole ("vcu", not "vcu9").
///
/// @param name  matched by strmcmpnocase(), so in any case of letters; a NUL ends it.
/// @return true for such a name; false for an empty name.
VARNEL_API bool IsSccBdName(const std::string& name);

}  // namespace VARNEL_COMMON

#endif

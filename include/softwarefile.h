#ifndef VARNEL_SOFTWAREFILE_H
#define VARNEL_SOFTWAREFILE_H

#include <cstddef>
#include <cstdint>

/// @file
/// Numbers and markers of the format of NE software files, for programs that read or write such files themselves.

namespace VARNEL_COMMON {

constexpr uint32_t ZEP_DIR_MAGIC = 0x51584444;   ///< starts the directory header: the bytes "QXDD"
constexpr uint32_t ZEP_FILE_MAGIC = 0x51584646;  ///< starts the file header: the bytes "QXFF"
constexpr size_t ZEP_HEAD_LENGTH = 64;           ///< bytes of each header
constexpr int ZEP_SUM_START = 8;                 ///< offset in a header of the first byte that the checksum covers
constexpr int ZEP_SUM_LENGTH = 52;               ///< bytes that the checksum covers

constexpr unsigned short ZEP_EXTENDED_TYPE = 2;          ///< the file type that has an extension word
constexpr unsigned short ZEP_MAX_LINK_LENGTH = 1023;     ///< longest valid link text, in bytes
constexpr unsigned short ZEP_NO_VERSION_LENGTH = 65535;  ///< a version length that means no version text, as 0 does
constexpr char ZEP_LINK_MARKER[] = "-> ";                ///< the link target follows it in the link text

/// Returns whether CheckZEPFileHead() accepts a file type.
///
/// @param type  the file type.
/// @return true for an accepted type.
constexpr bool ZepAcceptsFileType(unsigned int type) {
  return type <= 13 || type == 15 || type == 513;
}

constexpr size_t MAX_LINE_LENGTH = 1023;             ///< lines of a software file are cut to this number of bytes
constexpr char COLD_PATCH_MARKER[] = "[COLDPATCH]";  ///< a line of a cold patch contains it

constexpr char DESCRIPTION_START[] = "[File Description]";  ///< the list of entries starts after a line with it
constexpr char DESCRIPTION_END[] = "[END]";                 ///< the list ends before a line with it
constexpr size_t ENTRY_COLUMNS = 8;                         ///< columns of an entry, separated by ":"
constexpr size_t MAX_COLUMN_LENGTH = 255;                   ///< bytes of a column without the blanks around it
constexpr char ENTRY_COMMENT[] = "#";                       ///< at the start of the first column: a comment
constexpr char WIDE_ENTRY_COMMENT[] = "\xA3\xA3";  ///< in the first column: a comment; "#" of full width in GB2312

}  // namespace VARNEL_COMMON

#endif

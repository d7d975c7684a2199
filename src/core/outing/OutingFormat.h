#pragma once

// The data section of an outing file: where each channel's block lies, its rate and sample
// type, the cyclic time base, and the rule for writing a plain file from a cyclic one.

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "core/outing/OutingHeader.h"

inline constexpr int64_t kDataSectionStart = kOutingHeaderSize;  // 0-based file offset of block 0

// Bytes in one page of logger memory: 8 KB for "ECU" systems, else 16 KB.
int PageSize(const QString& system_name);

// Length in bytes of block i of ChannelTable. Plain files use the entry's own end fields; in
// cyclic files a block ends where entry i + 1 starts. Entry 128 (no closing entry) and bad page
// numbers can give a negative or huge length: callers check it against the file.
int64_t ChannelBlockLength(const OutingHeader& header, int i);

// 0-based file offsets of the blocks of entries 0..LoggedChannels-1 (LoggedChannels capped at
// 128), followed by the end of the data (where a constants block may follow).
std::vector<int64_t> ChannelBlockOffsets(const OutingHeader& header);

// Samples per ms of a rate code; code 2 means 250 Hz when any bit of SystemFlags is set.
float RateFromCode(int rate_code, uint16_t system_flags);

// The plain table in Hz (code 2 is always 200), as the memory partition window shows it.
int RateCodeHz(int rate_code);

enum class SampleType { None, U8, I16, I32, F32, F64 };

// How a logged sample is stored, by WordSize, key and whether the outing is converted.
SampleType SampleTypeFor(int word_size, int key, uint16_t lcu_serial);
const char* SampleTypeName(SampleType type);
// Bytes one sample of the type takes (0 for none).
int SampleTypeBytes(SampleType type);
// The sample stored at `p`, as a double.
double SampleAt(SampleType type, const uint8_t* p);

// Cyclic memory mode: beacon times and EndTime are on the logger's running time base.
struct CyclicTimes {
  int64_t Shift = 0;        // subtract from BeaconTimes and EndTime
  int64_t TrueEndTime = 0;  // end of the data on the time base of the samples
};
CyclicTimes CyclicTimeBase(const OutingHeader& header);

// The header of a plain file holding the same data as a cyclic one: the shift carried into
// BeaconTimes, the true end time in EndTime, each end field set to the start of the next
// entry, and Cyclic 0. A plain header is returned unchanged.
OutingHeader PlainHeaderFromCyclic(const OutingHeader& header);

// Why the program can't load an outing with this header (a Version that doesn't begin with a
// digit, more channels than the table holds); empty when it can.
QString HeaderRefusal(const OutingHeader& header);
// Checks a header against the size of its file. Each problem is one readable line: a warning,
// since such an outing still loads, its other channels intact; an empty list means the channel
// blocks lie inside the file and every channel can be read.
QStringList CheckOutingLayout(const OutingHeader& header, int64_t file_size);

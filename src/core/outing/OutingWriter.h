#pragma once

// Writes whole outing files: header, channel blocks and an optional constants block. The demo
// installation and the tests make their outings with it.

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

#include "core/outing/ConstantsBlock.h"
#include "core/outing/OutingFormat.h"
#include "core/outing/OutingHeader.h"

// One channel as it goes into the data section.
struct ChannelBlockData {
  uint16_t Key = 0;
  uint8_t RateCode = 0;
  uint8_t WordSize = 2;
  QByteArray Samples;  // WordSize bytes per sample, little-endian
};

// Stored samples of a type: integers round half to even and saturate at the type's range.
QByteArray EncodeSamples(SampleType type, const std::vector<double>& values);

// Sets LoggedChannels and the ChannelTable page fields from the blocks, in memory pages of the
// header's system, starting at `first_page`. A cyclic header (Cyclic above 0) gets the closing
// entry behind the last block, so at most 127 blocks fit; a plain one takes 128.
bool LayOutChannelTable(OutingHeader& header, const std::vector<ChannelBlockData>& blocks,
                        uint16_t first_page = 0, QString* error = nullptr);

// Lays out the table, then writes header, blocks and constants (when given) atomically. The
// header's fields are all written; bytes it does not name stay as they are in `header.Raw`.
bool WriteOutingFile(const QString& path, OutingHeader header, const std::vector<ChannelBlockData>& blocks,
                     const std::vector<ConstantEntry>* constants = nullptr, QString* error = nullptr);

#pragma once

// How an outing header becomes a loaded OutingRec: the steps that OpenOuting runs, each on one
// outing slot of the folder in view.

#include <QDateTime>
#include <QString>

struct Workspace;
struct OutingRec;

// The date and time of an outing. A logger's own time stamp is trusted from version 6.1.9 on;
// older loggers are dated by the file's last write, taken in local time.
QString OutingDateText(const QString& version, uint64_t start_file_time, const QDateTime& file_written, bool long_form);

// True when the version text is one whose logger stored temperatures and pulses in whole units.
bool IsOldDataVersion(const QString& version, int64_t lcu_serial);

// Samples per ms of a rate code in this outing (250 Hz for code 2 when SystemFlags is not 0).
float ChannelRate(const Workspace& ws, int rate_code, int slot);

void SetDataVersionFlag(Workspace& ws, int slot);
void BuildChannelLayout(Workspace& ws, int slot);
void FindStandardChannels(Workspace& ws, int slot);
void DerivedChannelSetup(Workspace& ws, int slot);
void LoadChannelCalibrations(Workspace& ws, int slot);
void CopyLogbook(Workspace& ws, int slot);

// The slot `slot` of the folder in view.
OutingRec& OutingAt(Workspace& ws, int slot);

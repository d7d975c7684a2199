#pragma once

// The rules of the small windows that name a new math channel or constant, and the plain text
// files that the math and constants editors export and import.

#include <QString>
#include <QStringList>
#include <vector>

#include "core/compute/MathDefinitions.h"

struct Workspace;

inline constexpr int kNameWidth = 32;  // names are fixed fields of 32 characters

// True when the name holds a character that the files cannot carry: "," ":" ";" "'" as
// always, and "[" "]" "=", which would split the definition or constant line differently when
// the file is read back.
bool HasIllegalNameCharacter(const QString& name);

// "Illegal character in channel name" with its title; false when the name holds one.
bool CheckNameCharacters(Workspace& ws, const QString& name);

// Names compare as the channel table holds them: trimmed and without regard to case, so "Slip"
// and "SLIP" cannot stand side by side as two channels.
bool SameName(const QString& a, const QString& b);

class frmNewMath {
 public:
  static const QString kCaption;  // "New Function"

  explicit frmNewMath(int next_id) : next_id_(next_id) {}
  QString lblID() const;  // "ID : 000-" and the next ID

  // The typed name as the table will hold it: trimmed, blanks inside turned into "_", cut to the
  // fixed width. Empty, with the message shown, when one of the tests fails. `skip_row` is the
  // row being renamed, which may keep its own name.
  static QString CheckName(Workspace& ws, const QString& typed, const std::vector<MathDefRec>& rows, int skip_row = -1);

 private:
  int next_id_;
};

// One above the highest ID in use, 1 for an empty table. Past 999, which "000" can no longer
// write, the lowest free ID from 1 up.
int NextMathID(const std::vector<MathDefRec>& rows);

// The lines of an export file, at most `kMaxExportBytes` of it read (garbage must not eat the
// memory), line ends "\r\n" or "\n". False when the file cannot be opened.
inline constexpr qint64 kMaxExportBytes = qint64{1} << 20;
bool ReadExportLines(const QString& path, QStringList& lines);

// Writes the lines with "\r\n" in Latin-1, all or nothing; false, with the message under `title`,
// when the file cannot be written (the old file then stays).
bool WriteExportLines(Workspace& ws, const QString& path, const QStringList& lines, const QString& title);

// "name = value" split at the first "="; false for a line with no name in front of an "=".
bool SplitExportLine(const QString& line, QString& name, QString& value);

// The question an import asks for a name that is in the table already.
QString OverwriteQuestion(const QString& name, const QString& what);

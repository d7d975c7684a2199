#pragma once

// The math definitions (MATHCHL.DEF) and the global constants (CONSTANT.DEF): plain text files
// in the math directory, shared by all outings on the machine.

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

struct Workspace;

inline constexpr int kMathDefRows = 257;        // MathDefs 0..256
inline constexpr int kMaxConstantLines = 512;
inline constexpr int kMathFunctionCount = 38;   // rows 0..22 functions, 23..37 operators
inline constexpr char kMathDefFileName[] = "MATHCHL.DEF";
inline constexpr char kConstantFileName[] = "CONSTANT.DEF";
inline constexpr char kMathDefFirstLine[] = "[ZOL Math Channels]";
inline constexpr char kConstantFirstLine[] = "[ZOL Global Constants]";

struct MathDefRec {
  QString Name;        // fixed text 32; "Undefined" when the line has no "["
  int16_t ID = 0;      // the number in the brackets
  QString Line;        // the whole line as read, right-trimmed
  QString Expression;  // what stands right of "="
  QString BoundText;   // the expression as bound to the outing compiled last
};

struct ConstantRec {
  QString Name;   // fixed text 32: all before the first "=", blanks kept until trimmed
  QString Value;  // a number written out, or a live link "topic!item"
};

// Clears the table to 257 rows, reads MATHCHL.DEF when it exists (skipping its first line and
// empty lines, looking at no more than 257 lines), then InitMathFunctions.
bool LoadMathChannels(Workspace& ws);
// Writes MATHCHL.DEF anew from the Line fields.
bool SaveMathDefs(Workspace& ws);
// Name, ID and Expression of every row from its Line.
void ProcessMathDefs(Workspace& ws);
// The 38 names of functions and operators, in the order the compiler scans them.
void InitMathFunctions(Workspace& ws);

// Reads CONSTANT.DEF when it exists (no more than 512 lines looked at).
bool LoadGlobalConstants(Workspace& ws);
// Writes CONSTANT.DEF anew.
bool SaveGlobalConstants(Workspace& ws);

// The line of a definition as the file holds it: "name[NNN] = expression".
QString MathDefLine(const QString& name, int id, const QString& expression);

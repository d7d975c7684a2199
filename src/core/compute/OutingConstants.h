#pragma once

// The constants of one outing. An outing keeps its own values (the tyre pressure or gear ratio it
// was run with) in a block behind its data; on loading, these override the global values of the
// constants of the same name. The table has the rows of the global table, in the same order.

#include <QString>

struct Workspace;

// Makes the outing's constants a copy of the global ones, then reads the block at DataEnd of the
// outing's file and gives each row whose name an entry holds that entry's value. Entries with a
// name that isn't defined are dropped; a file without the block keeps the global values. `path`
// is the outing's file, its FileName when empty (a load sets FileName only once it succeeded).
void LoadOutingConstants(Workspace& ws, int slot, const QString& path = QString());

// Rewrites the outing's file with the data as it stands and, at DataEnd, a block holding the
// outing's constants. A link is stored as the number in front of it. False, with a message,
// when the file cannot be written; the file is then as it was.
bool SaveOutingConstants(Workspace& ws, int slot);

// A value with "!" at its second character or later is a live link "topic!item" to a
// spreadsheet; anything else is the value itself.
bool IsConstantLink(const QString& value);

// The value that a constant stands for now: the value itself, or what its live link gives.
QString ResolveConstantLink(const QString& value);

// What a value reads as when it is taken as a number: leading blanks, a sign, digits, a fraction
// and an exponent, as far as they go; 0 when the text doesn't begin with a number.
double LeadingNumber(const QString& text);

// A 32-bit value as the outing's table holds it: at most seven significant digits.
QString ConstantValueText(float value);

#pragma once

// The math channels of a loaded outing: one channel per definition behind the logged and the
// three derived channels, with their compiled formulas and their rates. Kept in step with the
// definitions and constants whenever those change.

struct Workspace;

// Gives each definition its channel in the outing: key 1027 and up, named after the definition
// so that the descriptor copy finds its display settings, no rate until CalcMathRates.
void PrepareOutingMath(Workspace& ws, int slot);

// Rate of every math channel of the outing (samples per ms): the lowest rate of the channels its
// formula names, never above 1 kHz; 1 Hz when it names none; 0 when one of them has no rate.
// Reads the bound texts, so it runs right after CompileOutingMath of the same outing.
void CalcMathRates(Workspace& ws, int slot);

// After the definitions changed: the outing's math channels rebuilt for the new table (records,
// descriptors, keys, compiled formulas, rates), with their cached samples dropped. The logged and
// derived channels keep theirs.
void RecompileOutingMath(Workspace& ws, int slot);

// RecompileOutingMath for every loaded outing of every folder.
void RecompileLoadedOutings(Workspace& ws);

// After the Datum lap changed: drops the cached samples of the math channels of the current
// folder's outings whose formula holds "Delta", since they are differences to the Datum.
void ResetDeltaMathChannels(Workspace& ws);

#include "core/workspace/FolderTable.h"

void InitFolder(FolderRec& folder) {
  folder.InUse = 0;
  folder.SelOuting = 0;
  folder.SelChannel = 0;
  folder.DatumOuting = -1;
  folder.DatumLap = 0;
  folder.TreeChannelCount = 0;
  folder.Changed = 0;
}

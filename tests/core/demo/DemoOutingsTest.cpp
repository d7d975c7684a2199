#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/demo/DemoInstall.h"
#include "core/outing/ChannelDescriptors.h"

namespace {

// The demo installation: a user's own file of the same name is kept, the rest is made once.
TEST(DemoInstall, MakesWhatIsMissingAndKeepsWhatIsThere) {
  QTemporaryDir home;
  DemoResult first;
  RecordingMessages messages;
  QString error;
  ASSERT_TRUE(QDir().mkpath(home.filePath("Data")));
  ASSERT_TRUE(WriteFileAtomically(home.filePath("Data/SILV0101.DAT"), QByteArray("user's own file")));
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, first, &error, 1)) << error.toStdString();
  EXPECT_TRUE(first.Kept.contains(home.filePath("Data/SILV0101.DAT")));
  QByteArray kept;
  ASSERT_TRUE(ReadFileBytes(home.filePath("Data/SILV0101.DAT"), 0, 100, kept));
  EXPECT_EQ(kept, QByteArray("user's own file"));
  ChannelDescriptorFile dsc;
  ASSERT_TRUE(ReadChannelDescriptorFile(home.filePath("Setup/CHANNEL.DSC"), dsc));
  ASSERT_EQ(dsc.Records.size(), 1027u + 4);  // the keyed area, then the demo math channels
  EXPECT_EQ(dsc.Records[1027].Name.text, "REAR_SLIP");
  EXPECT_EQ(dsc.Records[70].Name.text, "DISTANCE");

  DemoResult second;
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, second, &error, 1));
  EXPECT_TRUE(second.Written.isEmpty());
}

}  // namespace

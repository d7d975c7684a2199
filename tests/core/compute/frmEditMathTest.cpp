#include "core/compute/frmEditMath.h"

#include "../TestOutings.h"
#include "core/compute/frmMathScales.h"
#include "core/compute/frmNewMath.h"

namespace {

using namespace test_outings;

// An editor over the given definitions, the constants "Fuel Density" and "Speed", and, unless
// told otherwise, a loaded outing with a few channels.
struct Editor {
  explicit Editor(const std::vector<const char*>& lines = {"Slip[001] = A - B"}, bool with_outing = true) {
    InitMathFunctions(b.ws);
    b.ws.MathDefs.assign(kMathDefRows, MathDefRec{});
    for (const char* l : lines) b.ws.MathDefs[static_cast<std::size_t>(b.ws.MathCount++)].Line = QString::fromLatin1(l);
    ProcessMathDefs(b.ws);
    b.ws.GlobalConstants = {{QStringLiteral("Fuel Density "), QStringLiteral("0.745")},
                            {QStringLiteral("Speed"), QStringLiteral("2")}};
    OutingRec& o = b.Outing();
    for (const char* name : {"A", "B", "SPEED", "RPM", "LATERAL G", ""}) o.Channels.emplace_back().Name = name;
    o.LastChannel = static_cast<int16_t>(o.Channels.size() - 1);  // the last slot is unused
    o.Loaded = with_outing ? -1 : 0;
    f.Form_Load(b.ws);
  }
  Workspace& ws() { return b.ws; }
  RecordingMessages::Entry Last() const { return LastMessage(b.messages); }

  BareWorkspace b;
  frmEditMath f;
};

TEST(frmEditMath, ValidateStringNormalisesOrWarns) {
  const char* kIllegal = "Illegal character in math string !";
  const char* kUndefined = "Undefined channel or constant in math string !";
  const char* kOperator = "Unrecognized operator in math string !";
  const char* kParenthesis = "Parenthesis error in math string !";
  struct Case {
    const char* typed;
    const char* result;  // the normalised text, or the warning after "WARNING : "
    const char* message = nullptr;
  } cases[] = {
      {".5", ".5"},
      {"1.", nullptr, kIllegal},
      {"A.", nullptr, kIllegal},  // the last character is looked at too
      {"1e5", nullptr, kUndefined},
      {"A+Q", nullptr, kUndefined},
      {"  a   -b  ", "A - B"},  // names take the case of their definition
      {"A>=B", "A >= B"},       // the longer operator first
      {"Sin(A)", " Sin (A)"},   // a function at the head stands between blanks
      {"sqrt(lateral g*lateral g)", " sqrt (LATERAL G * LATERAL G)"},
      {"fuel density*A", "Fuel Density * A"},
      {"SPEED*2", "Speed * 2"},  // a constant is looked for before a channel
      {"RPM2", "RPM2"},          // digits are no part of a name
      {"A $ B", nullptr, kOperator},
      {")A(", ")A("},                   // a sum of the brackets, not their order
      {"Q+(A", nullptr, kParenthesis},  // only the last message stays
      {"A+B\r\nQ", "A + B"},            // cut at the line break
  };
  for (const Case& k : cases) {
    Editor e;
    e.f.txtMath = QString::fromLatin1(k.typed);
    EXPECT_EQ(e.f.ValidateString(e.ws()), k.message == nullptr) << k.typed;
    EXPECT_EQ(e.f.txtMath, k.message ? k.typed : k.result) << k.typed;
    EXPECT_EQ(e.f.Row(0).Expression, k.message ? "A - B" : k.result) << k.typed;
    EXPECT_EQ(e.Last().text, k.message ? QStringLiteral("WARNING : ") + k.message : QString()) << k.typed;
    EXPECT_EQ(e.Last().title, k.message ? "Validate Math" : "") << k.typed;
  }
  Editor no_outing({"Slip[001] = A"}, false);  // only functions and constants are known
  no_outing.f.txtMath = QStringLiteral("abs(speed) - A");
  EXPECT_FALSE(no_outing.f.ValidateString(no_outing.ws()));
}

TEST(frmEditMath, NewAndRenamedNamesAreChecked) {
  const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
      {"Slip,1", nullptr, "Illegal character in channel name", "Check String"},
      {"X   ", nullptr, "Math channel names must be at least 2 characters", "New Math"},
      {"rear slip", nullptr, "Math channel name already in use !", "Math Name"},  // becomes Rear_Slip
      {"  Brake Split  ", "Brake_Split", "", ""},
      {"An extremely long channel name that will not fit", "An_extremely_long_channel_name_t", "", ""},
  };
  for (const auto& [name, stored, message, title] : cases) {
    const QString typed = QString::fromLatin1(name);
    Editor e({"Rear_Slip[001] = A", "Roll[007] = B"});
    EXPECT_EQ(e.f.mnuDefineNew(e.ws(), typed), stored != nullptr) << name;
    EXPECT_EQ(e.f.StatusName(), QStringLiteral("Name : ") + (stored ? stored : "Rear_Slip")) << name;
    EXPECT_EQ(e.f.StatusID(), stored ? "ID : 008" : "ID : 001") << name;
    EXPECT_EQ(e.Last().text, message) << name;
    EXPECT_EQ(e.Last().title, title) << name;
  }
  // A rename goes through the same tests; a row may keep its own name in another case.
  Editor e({"Roll[007] = B", "Slip[008] = A"});
  EXPECT_FALSE(e.f.mnuRename(e.ws(), QStringLiteral("slip")));
  EXPECT_TRUE(e.f.mnuRename(e.ws(), QStringLiteral("ROLL")));
  EXPECT_EQ(e.f.StatusID() + ' ' + e.f.StatusName(), "ID : 007 Name : ROLL");
}

TEST(frmEditMath, DeleteClosesTheGapAndTheTableHasALimit) {
  Editor e({"One[001] = A", "Two[002] = B", "Three[003] = A + B"});
  EXPECT_TRUE(e.f.mnuSelectChannel(e.ws(), 1));
  e.f.mnuDelete();
  EXPECT_EQ(e.f.StatusName(), "Name : Three");
  EXPECT_EQ(e.f.txtMath, "A + B");
  e.f.mnuDelete();
  e.f.mnuDelete();
  EXPECT_EQ(e.f.StatusName(), "Name : None Defined");
  for (int i = 0; i < kMathDefRows; ++i) ASSERT_TRUE(e.f.mnuDefineNew(e.ws(), QStringLiteral("M%1").arg(i)));
  EXPECT_EQ(e.f.StatusID(), "ID : 257");
  EXPECT_FALSE(e.f.mnuDefineNew(e.ws(), QStringLiteral("One_Too_Many")));
  EXPECT_EQ(e.f.MathCount(), kMathDefRows);
  EXPECT_EQ(e.Last().title, "New Math");
}

TEST(frmEditMath, ExportThenImportAsksForEachExistingName) {
  Editor e({"Rear_Slip[001] = A - B", "Combined_G[002] = Sqrt (LATERAL G * LATERAL G)"});
  const QString path = e.b.dir.filePath(QStringLiteral("MATH.TXT"));
  ASSERT_TRUE(e.f.mnuExport(e.ws(), {0, 1}, path));
  QByteArray bytes;
  ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 20, bytes));
  EXPECT_EQ(bytes, "[Export Math Channels]\r\nRear_Slip = A - B\r\nCombined_G = Sqrt (LATERAL G * LATERAL G)\r\n");

  Editor other({"Combined_G[003] = 0", "Rear_Slip[009] = 1"});
  other.b.messages.answers = {false, true};  // in the file's order: Rear_Slip no, Combined_G yes
  ASSERT_TRUE(WriteFileAtomically(path, bytes + "\r\nGear Ratio = RPM / SPEED\r\n= 5\r\nno sign\r\nX = 1\r\n"
                                                "Bad,Name = 2\r\nTail = A = B\n"));
  ASSERT_TRUE(other.f.mnuImport(other.ws(), path));
  ASSERT_EQ(other.b.messages.entries.size(), 2u);
  EXPECT_EQ(other.b.messages.entries[0].text, "Channel  \"Rear_Slip\"  exists. Overwrite existing channel ?");
  EXPECT_EQ(other.b.messages.entries[0].title, "Import Math");
  EXPECT_EQ(other.f.Row(1).Expression, "1");                   // no
  EXPECT_EQ(other.f.txtMath, "Sqrt (LATERAL G * LATERAL G)");  // yes, and the row shown follows
  // New names get rows of their own with the next IDs; what can be no name is left out.
  ASSERT_EQ(other.f.MathCount(), 4);
  EXPECT_EQ(other.f.Row(2).Name + ' ' + QString::number(other.f.Row(2).ID), "Gear_Ratio 10");
  EXPECT_EQ(other.f.Row(3).Expression, "A = B");  // split at the first "="
}

TEST(frmEditMath, ImportRefusesOtherFilesAndWritesFailWithoutHarm) {
  Editor e;
  const auto write = [&](const char* name, const QByteArray& bytes) {
    const QString path = e.b.dir.filePath(QString::fromLatin1(name));
    EXPECT_TRUE(WriteFileAtomically(path, bytes));
    return path;
  };
  const QString missing = e.b.dir.filePath(QStringLiteral("MISSING.TXT"));
  const std::pair<QString, QString> cases[] = {
      {write("CONST.TXT", "[Export Constants]\r\nA = 1\r\n"), "Invalid math definitions file"},
      {missing, "Unable to open file " + missing},
      {write("HUGE.TXT", "[ZOL Math Channel Definitions]\r\nBig = " + QByteArray(3 << 20, 'A')), ""},
      {write("LONG.TXT", "[Export Math Channels]\r\nLong = " + QByteArray(1 << 19, 'A').replace("AA", "A+")), ""},
  };
  for (const auto& [path, message] : cases) {
    e.b.messages.entries.clear();
    EXPECT_EQ(e.f.mnuImport(e.ws(), path), message.isEmpty()) << path.toStdString();
    EXPECT_EQ(e.Last().text, message);
  }
  ASSERT_EQ(e.f.MathCount(), 3);
  EXPECT_LT(e.f.Row(1).Expression.size(), kMaxExportBytes);  // the huge line, cut at what is read
  ASSERT_TRUE(e.f.mnuSelectChannel(e.ws(), 2));
  EXPECT_TRUE(e.f.ValidateString(e.ws()));  // a long formula is one pass, not one per word
  EXPECT_EQ(e.f.txtMath.size(), 1 << 20);   // "A + " for each "A+"

  // A file that cannot be written: a message, and the definitions in use stay as they were.
  const QString blocked = write("FILE", "x") + QStringLiteral("/MATH.TXT");  // a file as the directory
  EXPECT_FALSE(e.f.mnuExport(e.ws(), {0}, blocked));
  EXPECT_EQ(e.Last().title, "Export Math");
  e.ws().Paths.MathDirectory = blocked;
  EXPECT_FALSE(e.f.SaveMathChanges(e.ws()));
  EXPECT_EQ(e.Last().title, "Save Math");
  EXPECT_EQ(e.ws().MathCount, 1);
  EXPECT_TRUE(e.f.Changed());
}

// Two small outings loaded and one definition, in a home whose math directory exists.
struct LoadedHome {
  LoadedHome() {
    LoadSpeedOutings(home, QStringLiteral("Double[001] = SYSTEM SPEED * 2"), {1, 0});
    f.Form_Load(ws());
  }
  Workspace& ws() { return home.ws(); }
  QByteArray DefinitionFile() { return Bytes(JoinPath(ws().Paths.MathDirectory, kMathDefFileName)); }
  QByteArray Dsc() { return Bytes(ChannelDscPath(ws())); }
  static QByteArray Bytes(const QString& path) {
    QByteArray bytes;
    ReadFileBytes(path, 0, 1 << 24, bytes);
    return bytes;
  }
  // The math channel stands behind the logged and the three derived channels.
  const ChannelRec& Math(int slot) {
    const OutingRec& o = home.Outing(slot);
    return o.Channels.at(static_cast<std::size_t>(o.LoggedCount + 3));
  }
  TestHome home;
  frmEditMath f;
};

TEST(frmEditMath, SaveRewritesTheFileAndRecompilesLoadedOutings) {
  LoadedHome h;
  ASSERT_TRUE(h.f.mnuDefineNew(h.ws(), QStringLiteral("Half Speed")));
  h.f.txtMath = QStringLiteral("system speed/2");
  h.home.messages.answers = {false};
  EXPECT_TRUE(h.f.Form_QueryUnload(h.ws()));  // no: the changes are dropped
  EXPECT_EQ(h.home.messages.entries.at(0).text, "Save Math Changes ?");
  EXPECT_EQ(h.home.messages.entries.at(0).title, "Save Math");
  EXPECT_TRUE(h.DefinitionFile().isEmpty());
  EXPECT_EQ(h.ws().MathCount, 1);

  h.home.messages.answers = {true};
  EXPECT_TRUE(h.f.Form_QueryUnload(h.ws()));  // yes: the text is validated and saved
  EXPECT_EQ(h.DefinitionFile(),
            "[ZOL Math Channels]\r\nDouble[001] = SYSTEM SPEED * 2\r\nHalf_Speed[002] = SYSTEM SPEED / 2\r\n");
  for (int slot : {0, 1}) {
    const OutingRec& o = h.home.Outing(slot);
    ASSERT_EQ(o.Postfix.size(), 2u);
    EXPECT_EQ(o.Postfix[1].Count, 3);
  }
  // Deleting the first definition moves the other up in every outing.
  ASSERT_TRUE(h.f.mnuSelectChannel(h.ws(), 0));
  h.f.mnuDelete();
  ASSERT_TRUE(h.f.SaveMathChanges(h.ws()));
  const OutingRec& o = h.home.Outing(1);
  ASSERT_EQ(o.Postfix.size(), 1u);
  EXPECT_EQ(o.Postfix[0].Tokens[2].Text, "/");
}

TEST(frmMathScales, TheBoxesAreCheckedBeforeAnythingIsWritten) {
  const char* kNumbers = "The scale's minimum and maximum must be numbers";
  const char* kOrder = "The scale's maximum must be above its minimum";
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"-5", "15", nullptr}, {" 0.5 ", "2e3", nullptr}, {"", "10", kNumbers}, {"1,5", "10", kNumbers},
      {"0", "inf", kNumbers}, {"3", "3", kOrder},   {"10", "-10", kOrder},
  };
  for (const auto& [min, max, message] : cases) {
    LoadedHome h;
    const QByteArray before = h.Dsc();
    frmMathScales f;
    ASSERT_TRUE(f.Form_Load(h.ws(), QStringLiteral("Double")));
    f.txtMin = QString::fromLatin1(min);
    f.txtMax = QString::fromLatin1(max);
    f.txtUnits = QStringLiteral("km/h x 2");
    EXPECT_EQ(f.cmdOK(h.ws()), message == nullptr) << min << " " << max;
    EXPECT_EQ(LastMessage(h.home.messages).text, message ? message : "") << min << " " << max;
    if (message) {
      EXPECT_EQ(h.Dsc(), before) << min;
    }
  }
}

TEST(frmMathScales, StoredForEveryOutingAndTheNextStart) {
  LoadedHome h;
  frmMathScales f;
  ASSERT_TRUE(f.Form_Load(h.ws(), QStringLiteral("double")));
  f.txtUnits = QStringLiteral("km/h");
  f.txtMin = QStringLiteral("-20");
  f.txtMax = QStringLiteral("640");
  f.chkAutoScale = true;
  f.cboDecimals = 3;
  f.Color = 7;
  ASSERT_TRUE(f.cmdOK(h.ws()));
  for (int slot : {0, 1}) {
    const ChannelRec& c = h.Math(slot);
    EXPECT_EQ(c.Units, "km/h");
    EXPECT_EQ(c.ScreenMin, -20.0f);
    EXPECT_NE(c.AutoScale, 0);
    EXPECT_EQ(c.Color, 7);
  }
  ChannelDescriptorFile file;
  ASSERT_TRUE(ReadChannelDescriptorFile(ChannelDscPath(h.ws()), file));
  const ChannelDescriptor& d = file.Records.at(h.Math(0).DscIndex);
  EXPECT_EQ(d.Name.text.trimmed(), "DOUBLE");
  EXPECT_EQ(d.ScreenMax, 640.0f);

  // The window opens again on what was stored; a name no outing holds has nothing to show.
  frmMathScales again;
  ASSERT_TRUE(again.Form_Load(h.ws(), QStringLiteral("Double")));
  EXPECT_EQ(again.txtMax, "640");
  EXPECT_EQ(again.cboDecimals, 3);
  EXPECT_FALSE(again.Form_Load(h.ws(), QStringLiteral("Triple")));
  EXPECT_EQ(LastMessage(h.home.messages).title, "Math Scales");
}

}  // namespace

#include "platform/Defaults.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QStandardPaths>
#include <limits>

#include "platform/RealFileSystem.h"
#include "support/MemoryDefaults.h"
#include "support/TemporaryFolder.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

using Integers = std::vector<std::int64_t>;

QString key(const char* latin) {
  return QString::fromLatin1(latin);
}

class JsonDefaults : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  Path path = folder / "below" / "settings.json";
  std::unique_ptr<FileSystem> files = makeRealFileSystem();

  std::unique_ptr<Defaults> make() { return makeDefaults(QString::fromStdString(path.string())); }
  std::unique_ptr<Defaults> make(const std::string& text) {
    writeFile(*files, path, text);
    return make();
  }
};

void storeAll(Defaults& defaults) {
  defaults.setBytes(key("bytes"), QByteArray("/c\xFF\0rd", 6));
  defaults.setBytes(key("no bytes"), QByteArray(""));
  defaults.setBoolean(key("boolean"), true);
  defaults.setReal(key("real"), 0.1);
  defaults.setReal(key("whole"), 30.0);
  defaults.setReal(key("huge"), 1e300);
  defaults.setInteger(key("integer"), -9007199254740991);
  defaults.setIntegers(key("integers"), {3, 0, -1});
  defaults.setIntegers(key("no integers"), {});
}

void expectAll(const Defaults& defaults) {
  EXPECT_EQ(defaults.bytes(key("bytes")), QByteArray("/c\xFF\0rd", 6));
  EXPECT_EQ(defaults.bytes(key("no bytes")), QByteArray(""));
  EXPECT_EQ(defaults.boolean(key("boolean")), true);
  EXPECT_EQ(defaults.real(key("real")), 0.1);
  EXPECT_EQ(defaults.real(key("whole")), 30.0);
  EXPECT_EQ(defaults.integer(key("whole")), 30);
  EXPECT_EQ(defaults.integer(key("real")), std::nullopt);
  EXPECT_EQ(defaults.integer(key("huge")), std::nullopt);
  EXPECT_EQ(defaults.integer(key("integer")), -9007199254740991);
  EXPECT_EQ(defaults.real(key("integer")), -9007199254740991.0);
  EXPECT_EQ(defaults.integers(key("integers")), (Integers{3, 0, -1}));
  EXPECT_EQ(defaults.integers(key("no integers")), Integers{});
  // Each under every other kind is absent.
  for (const char* name : {"boolean", "real", "integer", "integers", "none"}) {
    EXPECT_EQ(defaults.bytes(key(name)), std::nullopt) << name;
  }
  for (const char* name : {"bytes", "real", "integer", "integers", "none"}) {
    EXPECT_EQ(defaults.boolean(key(name)), std::nullopt) << name;
  }
  for (const char* name : {"bytes", "boolean", "integers", "none"}) {
    EXPECT_EQ(defaults.real(key(name)), std::nullopt) << name;
    EXPECT_EQ(defaults.integer(key(name)), std::nullopt) << name;
  }
  for (const char* name : {"bytes", "boolean", "integer", "none"}) {
    EXPECT_EQ(defaults.integers(key(name)), std::nullopt) << name;
  }
}

TEST_F(JsonDefaults, KeepEachValueWithItsKind) {
  const auto defaults = make();
  storeAll(*defaults);
  expectAll(*defaults);
  // What another process would read: written at once, not at the end.
  const std::string text = readFile(*files, path);
  path = folder / "copy.json";
  expectAll(*make(text));
}

TEST(MemoryDefaults, AnswersLikeTheRealOnes) {
  MemoryDefaults defaults;
  storeAll(defaults);
  expectAll(defaults);
  defaults.setText(key("real"), key("30"));
  EXPECT_EQ(defaults.real(key("real")), std::nullopt);
}

TEST_F(JsonDefaults, ForeignKindsCountAsAbsent) {
  const auto defaults = make(R"({"text": "30", "number text": "true", "null": null, "mixed": [1, true],
    "fraction": [1, 2.5], "object": {"base64": "!!", "x": 1}, "broken": {"base64": "a*b"}, "list": [30]})");
  for (const char* name : {"text", "number text", "null", "mixed", "fraction", "object", "broken"}) {
    EXPECT_EQ(defaults->bytes(key(name)), std::nullopt) << name;
    EXPECT_EQ(defaults->boolean(key(name)), std::nullopt) << name;
    EXPECT_EQ(defaults->real(key(name)), std::nullopt) << name;
    EXPECT_EQ(defaults->integer(key(name)), std::nullopt) << name;
    EXPECT_EQ(defaults->integers(key(name)), std::nullopt) << name;
  }
  EXPECT_EQ(defaults->integer(key("list")), std::nullopt);
}

TEST_F(JsonDefaults, WhatTheProgramDoesNotKnowSurvivesAWrite) {
  make(R"({"later": {"deep": [1, "two", null, {"base64": "AAE="}]}, "nothing": null, "old": 1.5})")
      ->setBoolean(key("new"), false);
  const std::string text = readFile(*files, path);
  for (const char* part : {"\"later\"", "\"deep\"", "\"two\"", "\"AAE=\"", "\"nothing\": null", "1.5", "\"new\""}) {
    EXPECT_THAT(text, ::testing::HasSubstr(part));
  }
}

TEST_F(JsonDefaults, ADamagedFileReadsAsEmptyAndIsReplaced) {
  for (const char* text : {"", "{", "[1, 2]", "\xFF\xFE\x00", "{\"integer\": 1} trailing"}) {
    const auto defaults = make(text);
    EXPECT_EQ(defaults->integer(key("integer")), std::nullopt) << text;
    defaults->setInteger(key("integer"), 2);
    EXPECT_EQ(defaults->integer(key("integer")), 2) << text;
    EXPECT_THAT(readFile(*files, path), ::testing::HasSubstr("\"integer\": 2"));
    path = folder / (std::to_string(std::hash<std::string>()(text)) + ".json");
  }
}

TEST_F(JsonDefaults, APipeInTheirPlaceIsNeitherWaitedForNorReplaced) {
  files->makeFolder(path.parent_path());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const auto defaults = make();
  EXPECT_EQ(defaults->integer(key("integer")), std::nullopt);
  defaults->setInteger(key("integer"), 2);
  EXPECT_EQ(defaults->integer(key("integer")), 2);
  EXPECT_EQ(files->status(path).kind, FileKind::other);
}

TEST_F(JsonDefaults, TheUsersFileLiesInTheConfigurationFolder) {
  makeUserDefaults()->setInteger(key("probe"), 5);
  const Path configuration = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString();
  EXPECT_THAT(readFile(*files, configuration / "tamboro/tamboro.json"), ::testing::HasSubstr("\"probe\": 5"));
}

}  // namespace
}  // namespace tamboro::test

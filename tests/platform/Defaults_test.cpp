#include "platform/Defaults.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QStandardPaths>

#include "platform/RealFileSystem.h"
#include "support/MemoryDefaults.h"
#include "support/TemporaryFolder.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

using ::testing::HasSubstr;

const QString one = QStringLiteral("one");
const QString other = QStringLiteral("other");

class JsonDefaults : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  Path path = folder / "below" / "settings.json";
  int count = 0;
  std::unique_ptr<FileSystem> files = makeRealFileSystem();

  std::unique_ptr<Defaults> make() { return makeDefaults(QString::fromStdString(path.string())); }
  /// Settings in a file of their own with this text.
  std::unique_ptr<Defaults> make(const std::string& text) {
    path = folder / (std::to_string(++count) + ".json");
    writeFile(*files, path, text);
    return make();
  }
};

/// What of each kind stands under a key: bytes, boolean, real, integer, integers.
std::string told(const Defaults& defaults, const QString& key) {
  std::string text;
  if (const auto bytes = defaults.bytes(key)) text += "y:" + bytes->toHex().toStdString() + " ";
  if (const auto boolean = defaults.boolean(key)) text += *boolean ? "true " : "false ";
  if (const auto real = defaults.real(key)) text += "r:" + QString::number(*real).toStdString() + " ";
  if (const auto integer = defaults.integer(key)) text += "i:" + std::to_string(*integer) + " ";
  if (const auto integers = defaults.integers(key)) text += "list:" + std::to_string(integers->size()) + " ";
  return text;
}

TEST_F(JsonDefaults, KeepEachValueWithItsKindAndAtOnce) {
  using Store = std::function<void(Defaults&)>;
  const std::pair<Store, const char*> cases[] = {
      {[](auto& d) { d.setBytes(one, QByteArray("/c\xFF\0", 4)); }, "y:2f63ff00 "},
      {[](auto& d) { d.setBytes(one, QByteArray("")); }, "y: "},
      {[](auto& d) { d.setBoolean(one, true); }, "true "},
      {[](auto& d) { d.setReal(one, 0.25); }, "r:0.25 "},
      {[](auto& d) { d.setReal(one, 30.0); }, "r:30 i:30 "},
      {[](auto& d) { d.setReal(one, 1e300); }, "r:1e+300 "},
      {[](auto& d) { d.setInteger(one, -9007199254740991); }, "r:-9.0072e+15 i:-9007199254740991 "},
      {[](auto& d) { d.setIntegers(one, {3}); }, "list:1 "},
      {[](auto& d) { d.setIntegers(one, {}); }, "list:0 "},
  };
  for (const auto& [store, expected] : cases) {
    const auto defaults = make();
    test::MemoryDefaults memory;  // the other tests' settings answer alike
    store(*defaults);
    store(memory);
    EXPECT_EQ(told(*defaults, one), expected);
    EXPECT_EQ(told(memory, one), expected);
    EXPECT_EQ(told(*make(readFile(*files, path)), one), expected) << "what another process reads";
  }
}

TEST_F(JsonDefaults, ForeignKindsCountAsAbsentAndSurviveAWriteButADamagedFileIsReplaced) {
  const auto written = [&](const std::string& text) {
    const auto defaults = make(text);
    EXPECT_EQ(told(*defaults, one), "") << text;
    defaults->setBoolean(other, true);
    std::string now = readFile(*files, path);
    std::erase_if(now, [](char c) { return c == ' ' || c == '\n'; });
    return now;
  };
  for (const std::string kept : {R"("30")", "null", "[1,true]", "[1,2.5]", R"({"base64":"AAE=","x":1})",
                                 R"({"base64":"a*b"})", R"({"deep":[1,"two"]})"})
    EXPECT_EQ(written("{\"one\": " + kept + "}"), "{\"one\":" + kept + ",\"other\":true}");
  for (const std::string damaged : {"", "{", "[1, 2]", "{\"one\": 1} trailing"})
    EXPECT_EQ(written(damaged), "{\"other\":true}");
}

TEST_F(JsonDefaults, APipeInTheirPlaceIsNeitherWaitedForNorReplaced) {
  files->makeFolder(path.parent_path());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const auto defaults = make();
  defaults->setInteger(one, 2);
  EXPECT_EQ(told(*defaults, one), "r:2 i:2 ");
  EXPECT_EQ(files->status(path).kind, FileKind::other);
}

TEST_F(JsonDefaults, TheUsersFileLiesInTheConfigurationFolder) {
  makeUserDefaults()->setInteger(one, 5);
  const Path configuration = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString();
  EXPECT_THAT(readFile(*files, configuration / "tamboro/tamboro.json"), HasSubstr("\"one\": 5"));
}

}  // namespace
}  // namespace tamboro::test

#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <gtest/gtest.h>

#include <cwchar>

namespace QXC {
namespace {

int g_nLiving = 0;

class CountedParser : public QXFileParseModel {
public:
  CountedParser() { ++g_nLiving; }
  ~CountedParser() override { --g_nLiving; }
  unsigned char Open(QXImportParams*) override { return 0; }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }

private:
  QdcUnicodeString m_strError;
};

QXFileParser* CreateCounted() {
  return new CountedParser;
}
QXFileParser* CreateNone() {
  return nullptr;
}
void DestroyCounted(QXFileParser* pParser) {
  delete pParser;
}

constexpr int OwnType = QXFileType::EM_FIRST_CUSTOM + 7;

TEST(QXFileParseManager, UnknownTypeGivesNullAndAReason) {
  EXPECT_EQ(QXFileParseManager::CreateFileParser(-1, 0), nullptr);
  EXPECT_NE(std::wcsstr(QXFileParseManager::GetErrorText().Cstr(), L"file type -1"), nullptr);
}

TEST(QXFileParseManager, RegisteredParserIsMadeAndGoesBackToItsProcedure) {
  QXFileParseManager::RegisterFileParser(OwnType, &CreateCounted, &DestroyCounted);
  QXFileParser* pParser = QXFileParseManager::CreateFileParser(OwnType, 0);
  ASSERT_NE(pParser, nullptr);
  EXPECT_EQ(QXFileParseManager::GetErrorText().IsEmpty(), 1);
  EXPECT_EQ(g_nLiving, 1);
  QXFileParseManager::DestroyFileParser(pParser);
  EXPECT_EQ(g_nLiving, 0);
  QXFileParseManager::RegisterFileParser(OwnType, nullptr, nullptr);
  EXPECT_EQ(QXFileParseManager::CreateFileParser(OwnType, 0), nullptr);
}

TEST(QXFileParseManager, RegisteredParserStandsBeforeTheModuleOfItsType) {
  QXFileParseManager::RegisterFileParser(QXFileType::EM_MODEL_OBJ, &CreateCounted, &DestroyCounted);
  QXFileParser* pParser = QXFileParseManager::CreateFileParser(QXFileType::EM_MODEL_OBJ, 0);
  EXPECT_EQ(g_nLiving, 1);
  // Its procedure may be gone by the time it comes back: it returns to the one that made it.
  QXFileParseManager::RegisterFileParser(QXFileType::EM_MODEL_OBJ, nullptr, nullptr);
  QXFileParseManager::DestroyFileParser(pParser);
  EXPECT_EQ(g_nLiving, 0);
}

TEST(QXFileParseManager, ProcedureThatMakesNothingIsAFailureWithAReason) {
  QXFileParseManager::RegisterFileParser(OwnType, &CreateNone, &DestroyCounted);
  EXPECT_EQ(QXFileParseManager::CreateFileParser(OwnType, 0), nullptr);
  EXPECT_EQ(QXFileParseManager::GetErrorText().IsEmpty(), 0);
  QXFileParseManager::RegisterFileParser(OwnType, nullptr, nullptr);
}

TEST(QXFileParseManager, NullAndStrangersAreLeftAlone) {
  QXFileParseManager::DestroyFileParser(nullptr);
  CountedParser parser;
  QXFileParseManager::DestroyFileParser(&parser);
  EXPECT_EQ(g_nLiving, 1);
}

}  // namespace
}  // namespace QXC

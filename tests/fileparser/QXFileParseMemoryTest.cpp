#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <tests/testing/QXAllocationCounter.h>

#include <gtest/gtest.h>

#include <new>

namespace QXC {
namespace {

int g_nLiving = 0;

class LivingParser : public QXFileParseModel {
public:
  LivingParser() { ++g_nLiving; }
  ~LivingParser() override { --g_nLiving; }
  unsigned char Open(QXImportParams*) override { return 0; }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }

private:
  QdcUnicodeString m_strError;
};

TEST(QXFileParseMemory, ParserIsNeverLeftBehindWhereverMemoryRunsOut) {
  constexpr int kType = QXFileType::EM_FIRST_CUSTOM + 8;
  QXFileParseManager::RegisterFileParser(
      kType, []() -> QXFileParser* { return new LivingParser; }, [](QXFileParser* pParser) { delete pParser; });
  // What is made once only is there afterwards.
  QXFileParseManager::DestroyFileParser(QXFileParseManager::CreateFileParser(kType, 0));
  long nRefused = 0;
  for (QXFileParser* pParser = nullptr; pParser == nullptr;) {
    ASSERT_LT(++nRefused, 100);
    RefuseAllocation(nRefused);
    try {
      pParser = QXFileParseManager::CreateFileParser(kType, 0);
    } catch (std::bad_alloc const&) {}
    RefuseAllocation(0);
    ASSERT_EQ(g_nLiving, pParser != nullptr ? 1 : 0) << "without allocation " << nRefused;
    QXFileParseManager::DestroyFileParser(pParser);
  }
  // The parser and what is remembered of it, at least.
  EXPECT_GT(nRefused, 2);
  EXPECT_EQ(g_nLiving, 0);
  QXFileParseManager::RegisterFileParser(kType, nullptr, nullptr);
}

}  // namespace
}  // namespace QXC

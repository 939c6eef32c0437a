#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace QXC {
namespace {

constexpr int OwnType = QXFileType::EM_FIRST_CUSTOM + 11;

int ContentOf(std::string const& strBytes) {
  return QXFileParseToolkit::GetFileTypeByContent(
      reinterpret_cast<unsigned char const*>(strBytes.data()), strBytes.size());
}

/// Takes a host's row away at the end of a test.
class RowGuard {
public:
  explicit RowGuard(int nType) : m_nType(nType) {}
  ~RowGuard() { QXFileParseManager::UnregisterFileType(m_nType); }

private:
  int m_nType;
};

QXFileTypeRow OwnRow() {
  QXFileTypeRow row;
  row.m_nType = OwnType;
  row.m_eKind = EM_FILE_IMAGE;
  row.m_strExtensions = L".own .OWN2";
  row.m_strMagic = L"4F..4E ffFe";
  return row;
}

struct ImageTypeCase {
  wchar_t const* m_szExt;
  int m_nType;
};

class QXImageTypes : public testing::TestWithParam<ImageTypeCase> {};

TEST_P(QXImageTypes, AreKnownByTheirExtensionInAnyCase) {
  EXPECT_EQ(QXFileType::ExtNameToFileType(GetParam().m_szExt), GetParam().m_nType);
  QdcUnicodeString strUpper = GetParam().m_szExt;
  for (int i = 0; i < strUpper.GetLength(); ++i)
    if (strUpper[i] >= L'a' && strUpper[i] <= L'z') strUpper[i] = strUpper[i] - L'a' + L'A';
  EXPECT_EQ(QXFileType::ExtNameToFileType(strUpper), GetParam().m_nType);
  EXPECT_EQ(
      QXFileParseToolkit::GetFileTypeByExtName(QdcUnicodeString(L"/x.y/z") + GetParam().m_szExt), GetParam().m_nType);
  EXPECT_EQ(QXFileType::IsImageType(GetParam().m_nType), 1);
  EXPECT_EQ(QXFileType::IsModelType(GetParam().m_nType), 0);
}

INSTANTIATE_TEST_SUITE_P(Extensions, QXImageTypes,
    testing::Values(ImageTypeCase{L".bmp", 121}, ImageTypeCase{L".jpg", 122}, ImageTypeCase{L".jpeg", 122},
        ImageTypeCase{L".png", 123}, ImageTypeCase{L".gif", 124}, ImageTypeCase{L".tif", 125},
        ImageTypeCase{L".tiff", 125}, ImageTypeCase{L".webp", 126}, ImageTypeCase{L".tga", 127},
        ImageTypeCase{L".hdr", 128}, ImageTypeCase{L".psd", 129}, ImageTypeCase{L".ktx2", 130}));

TEST(QXFileTypeTable, KnowsImageTypesAlone) {
  for (int const nType : {-1, 0, 120, 131, 200, 207, 1000}) EXPECT_EQ(QXFileType::IsImageType(nType), 0) << nType;
}

TEST(QXFileTypeTable, OffersTheExtensionsInOrder) {
  QdcArray<QdcUnicodeString> arrExtNames;
  QXFileType::GetImageExtNames(arrExtNames);
  std::vector<std::string> vecExtNames;
  for (QdcUnicodeString const& strExt : arrExtNames) vecExtNames.emplace_back(strExt.ToMBString().Cstr());
  EXPECT_THAT(vecExtNames, testing::ElementsAre(".bmp", ".jpg", ".jpeg", ".png", ".gif", ".tif", ".tiff", ".webp",
                               ".tga", ".hdr", ".psd", ".ktx2"));
  EXPECT_TRUE(QXFileType::FileTypeToExtName(QXFileType::EM_IMAGE_JPG) == L".jpg");
}

TEST(QXFileTypeTable, MakesAReaderOfEachImageType) {
  for (int nType = QXFileType::EM_IMAGE_BMP; nType <= QXFileType::EM_IMAGE_KTX2; ++nType) {
    QXFileParser* const pParser = QXFileParseManager::CreateFileParser(nType, 0);
    EXPECT_NE(dynamic_cast<QXFileParseImage*>(pParser), nullptr) << nType;
    QXFileParseManager::DestroyFileParser(pParser);
  }
}

TEST(QXFileTypeTable, KnowsWhatFilesBeginWith) {
  using namespace std::string_literals;
  EXPECT_EQ(ContentOf("BM and more"), 121);
  EXPECT_EQ(ContentOf("\xFF\xD8\xFF\xE0"), 122);
  EXPECT_EQ(ContentOf("\x89PNG\r\n\x1A\n"), 123);
  EXPECT_EQ(ContentOf("GIF87a"), 124);
  EXPECT_EQ(ContentOf("GIF89a..."), 124);
  EXPECT_EQ(ContentOf("II*\0"s), 125);
  EXPECT_EQ(ContentOf("MM\0*"s), 125);
  EXPECT_EQ(ContentOf("II+\0"s), 125);
  EXPECT_EQ(ContentOf("MM\0+"s), 125);
  EXPECT_EQ(ContentOf("RIFF\1\2\3\4WEBP"), 126);
  EXPECT_EQ(ContentOf("#?RADIANCE\n"), 128);
  EXPECT_EQ(ContentOf("#?RGBE\n"), 128);
  EXPECT_EQ(ContentOf("8BPS"), 129);
  EXPECT_EQ(ContentOf("\xABKTX 20\xBB\r\n\x1A\n"), 130);
}

TEST(QXFileTypeTable, KnowsNothingByABeginningThatIsCutOrAnother) {
  EXPECT_EQ(ContentOf(""), -1);
  EXPECT_EQ(QXFileParseToolkit::GetFileTypeByContent(nullptr, 100), -1);
  EXPECT_EQ(ContentOf("\x89PNG\r\n\x1A"), -1);
  EXPECT_EQ(ContentOf("GIF88a"), -1);
  EXPECT_EQ(ContentOf("RIFF\1\2\3\4WAVE"), -1);
  EXPECT_EQ(ContentOf("RIFF\1\2\3\4WEB"), -1);
  EXPECT_EQ(ContentOf("solid model"), -1);
}

std::string Targa() {
  std::string strBytes(18, '\0');
  strBytes[2] = 2;
  strBytes[12] = strBytes[14] = 1;
  strBytes[16] = 24;
  return strBytes;
}

TEST(QXFileTypeTable, KnowsTargaByItsHeader) {
  EXPECT_EQ(ContentOf(Targa()), 127);
  EXPECT_EQ(ContentOf(Targa().substr(0, 17)), -1);
  for (int const nType : {1, 2, 3, 9, 10, 11}) {
    std::string strBytes = Targa();
    strBytes[2] = static_cast<char>(nType);
    // A palette, which type 1 needs and the others may have.
    strBytes[1] = 1;
    strBytes[7] = 24;
    EXPECT_EQ(ContentOf(strBytes), 127) << nType;
    strBytes[1] = 0;
    EXPECT_EQ(ContentOf(strBytes), nType % 8 == 1 ? -1 : 127) << nType;
    strBytes[1] = 2;
    EXPECT_EQ(ContentOf(strBytes), -1) << nType;
  }
  for (int const nType : {0, 4, 8, 12, 18, 32}) {
    std::string strBytes = Targa();
    strBytes[2] = static_cast<char>(nType);
    EXPECT_EQ(ContentOf(strBytes), -1) << nType;
  }
  for (std::size_t const nPlace : {12u, 14u, 16u}) {
    std::string strBytes = Targa();
    strBytes[nPlace] = 0;
    EXPECT_EQ(ContentOf(strBytes), -1) << nPlace;
  }
}

TEST(QXFileTypeTable, TakesAHostsType) {
  RowGuard const guard(OwnType);
  ASSERT_EQ(QXFileParseManager::RegisterFileType(OwnRow()), 1);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".OWN"), OwnType);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".own2"), OwnType);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".own3"), -1);
  EXPECT_TRUE(QXFileType::FileTypeToExtName(OwnType) == L".own");
  EXPECT_EQ(QXFileType::IsImageType(OwnType), 1);
  EXPECT_EQ(ContentOf("O?N"), OwnType);
  EXPECT_EQ(ContentOf("\xFF\xFE"), OwnType);
  EXPECT_EQ(ContentOf("ON?"), -1);
  QXFileParseManager::UnregisterFileType(OwnType);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".own"), -1);
  EXPECT_EQ(QXFileType::IsImageType(OwnType), 0);
  EXPECT_EQ(ContentOf("\xFF\xFE"), -1);
}

TEST(QXFileTypeTable, LooksAtTheLatestRowFirst) {
  RowGuard const guard(OwnType);
  RowGuard const otherGuard(OwnType + 1);
  QXFileTypeRow row = OwnRow();
  row.m_strExtensions = L".png .own";
  row.m_strMagic = L"89504E47";
  ASSERT_EQ(QXFileParseManager::RegisterFileType(row), 1);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".png"), OwnType);
  EXPECT_EQ(ContentOf("\x89PNG\r\n\x1A\n"), OwnType);
  EXPECT_EQ(QXFileType::IsImageType(QXFileType::EM_IMAGE_PNG), 1);
  row.m_nType = OwnType + 1;
  ASSERT_EQ(QXFileParseManager::RegisterFileType(row), 1);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".png"), OwnType + 1);
  row.m_nType = OwnType;
  ASSERT_EQ(QXFileParseManager::RegisterFileType(row), 1);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".png"), OwnType);
}

TEST(QXFileTypeTable, HidesTheLibrarysRowBehindTheHosts) {
  QXFileTypeRow row = OwnRow();
  row.m_nType = QXFileType::EM_IMAGE_PNG;
  {
    RowGuard const guard(QXFileType::EM_IMAGE_PNG);
    ASSERT_EQ(QXFileParseManager::RegisterFileType(row), 1);
    EXPECT_EQ(QXFileType::ExtNameToFileType(L".own"), QXFileType::EM_IMAGE_PNG);
    EXPECT_EQ(QXFileType::ExtNameToFileType(L".png"), -1);
    EXPECT_EQ(ContentOf("\x89PNG\r\n\x1A\n"), -1);
    EXPECT_EQ(QXFileParseManager::CreateFileParser(QXFileType::EM_IMAGE_PNG, 0), nullptr);
  }
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".png"), QXFileType::EM_IMAGE_PNG);
}

TEST(QXFileTypeTable, RefusesRowsThatCannotWork) {
  RowGuard const guard(OwnType);
  auto const refuse = [](auto change) {
    QXFileTypeRow row = OwnRow();
    change(row);
    EXPECT_EQ(QXFileParseManager::RegisterFileType(row), 0);
  };
  refuse([](QXFileTypeRow& row) { row.m_nType = -1; });
  refuse([](QXFileTypeRow& row) { row.m_strExtensions = L""; });
  refuse([](QXFileTypeRow& row) { row.m_strExtensions = L"own ."; });
  refuse([](QXFileTypeRow& row) { row.m_strMagic = L"4F 4"; });
  refuse([](QXFileTypeRow& row) { row.m_strMagic = L"4G"; });
  refuse([](QXFileTypeRow& row) { row.m_strMagic = L"4."; });
  refuse([](QXFileTypeRow& row) { row.m_pfnDestroy = [](QXFileParser*) {}; });
  refuse([](QXFileTypeRow& row) { row.m_pfnCreate = []() -> QXFileParser* { return nullptr; }; });
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".own"), -1);
}

TEST(QXFileTypeTable, AsksProceduresAfterAllMagicBytes) {
  RowGuard const guard(OwnType);
  QXFileTypeRow row = OwnRow();
  row.m_strMagic = L"";
  row.m_pfnContent = [](unsigned char const*, QXUInt64 nSize) { return static_cast<unsigned char>(nSize > 2); };
  ASSERT_EQ(QXFileParseManager::RegisterFileType(row), 1);
  EXPECT_EQ(ContentOf("BM!"), 121);
  EXPECT_EQ(ContentOf("???"), OwnType);
  EXPECT_EQ(ContentOf("??"), -1);
}

TEST(QXFileTypeTable, IsUsedByManyThreads) {
  std::vector<std::thread> vecThreads;
  for (int nThread = 0; nThread < 4; ++nThread) {
    vecThreads.emplace_back([nThread] {
      RowGuard const guard(OwnType + nThread);
      QXFileTypeRow row = OwnRow();
      row.m_nType = OwnType + nThread;
      row.m_strExtensions.Format(L".own%d", nThread);
      for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(QXFileParseManager::RegisterFileType(row), 1);
        EXPECT_EQ(QXFileType::ExtNameToFileType(row.m_strExtensions), row.m_nType);
        EXPECT_EQ(ContentOf("GIF89a"), 124);
        QXFileParser* const pParser = QXFileParseManager::CreateFileParser(QXFileType::EM_IMAGE_BMP, 0);
        EXPECT_NE(pParser, nullptr);
        EXPECT_EQ(QXFileParseManager::CreateFileParser(-nThread - 2, 0), nullptr);
        QdcUnicodeString strText;
        strText.Format(L"there is no parser for file type %d", -nThread - 2);
        EXPECT_TRUE(QXFileParseManager::GetErrorText() == strText) << "each thread has a text of its own";
        QXFileParseManager::DestroyFileParser(pParser);
      }
    });
  }
  for (std::thread& thread : vecThreads) thread.join();
}

}  // namespace
}  // namespace QXC

/// @file
/// A parser that hands out what the test feeds it and writes down how it is called.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <functional>

namespace QXC {

/// What the parsers do and what happened to them.
struct QXFedScript {
  std::function<void(QdcArray<QXImageData*>&)> m_FillImages = [](QdcArray<QXImageData*>&) {};
  std::function<void(QdcArray<QXGeoPicture*>&)> m_FillPictures = [](QdcArray<QXGeoPicture*>&) {};
  std::function<void()> m_OnOpen = [] {};
  unsigned char m_bOpens = 1;
  unsigned char m_bReads = 1;

  int m_nMade = 0;
  int m_nLiving = 0;
  QdcUnicodeString m_strPath;
  int m_nType = -1;
  QdcUnicodeString m_strText = L"unset";
  int m_nFlag = -1;
  int m_nIndex = 12345;
  int m_nFlip = -1;
};

inline QXFedScript g_Fed;

class QXFedParser final : public QXFileParseImage {
public:
  QXFedParser() {
    ++g_Fed.m_nMade;
    ++g_Fed.m_nLiving;
  }
  ~QXFedParser() override { --g_Fed.m_nLiving; }

  unsigned char Open(QXImportParams* pParams) override {
    g_Fed.m_strPath = pParams->GetFilePathName();
    g_Fed.m_nType = pParams->GetFileType();
    g_Fed.m_strText = pParams->GetText();
    g_Fed.m_OnOpen();
    return g_Fed.m_bOpens;
  }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }
  unsigned char GetImageData(QdcArray<QXImageData*>& arrImages, unsigned char bFlag, int nIndex) override {
    g_Fed.m_nFlag = bFlag;
    g_Fed.m_nIndex = nIndex;
    g_Fed.m_FillImages(arrImages);
    return g_Fed.m_bReads;
  }
  unsigned char GetDynamicIMGData(QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip) override {
    g_Fed.m_nFlip = bFlip;
    g_Fed.m_FillPictures(arrPictures);
    return g_Fed.m_bReads;
  }
  unsigned char OpenBytes(unsigned char const*, QXUInt64) override { return g_Fed.m_bOpens; }

private:
  QdcUnicodeString m_strError = L"as the test wants it";
};

/// Makes QXFedParser the parser of a type for as long as it lives.
class QXFedType {
public:
  explicit QXFedType(int nType) : m_nType(nType) {
    g_Fed = QXFedScript();
    QXFileParseManager::RegisterFileParser(
        nType, []() -> QXFileParser* { return new QXFedParser; }, [](QXFileParser* pParser) { delete pParser; });
  }
  QXFedType(QXFedType const&) = delete;
  QXFedType& operator=(QXFedType const&) = delete;
  ~QXFedType() {
    QXFileParseManager::RegisterFileParser(m_nType, nullptr, nullptr);
    g_Fed = QXFedScript();
  }

private:
  int m_nType;
};

/// An image record with a block of nPixelBytes a pixel, no two neighbouring bytes alike. Never inlined: knowing how short
/// the block is, g++ 12 suspects its own vector loop of writing past the end.
[[gnu::noinline]] inline QXImageData* MakeFedImage(
    unsigned int nWidth, unsigned int nHeight, unsigned char nBitDepth, unsigned int nPixelBytes) {
  auto* const pImage = new QXImageData;
  pImage->m_nWidth = nWidth;
  pImage->m_nHeight = nHeight;
  pImage->m_nBitDepth = nBitDepth;
  pImage->m_nPitch = nWidth * nPixelBytes;
  std::size_t const nLength = std::size_t{pImage->m_nPitch} * nHeight;
  auto* const pBlock = new unsigned char[nLength];
  for (std::size_t i = 0; i < nLength; ++i) pBlock[i] = static_cast<unsigned char>(i * 37 + i / 241 * 11 + 1);
  pImage->m_pPixels = pBlock;
  return pImage;
}

inline QXImageData* MakeFedImage(unsigned int nWidth, unsigned int nHeight, unsigned char nBitDepth) {
  return MakeFedImage(nWidth, nHeight, nBitDepth, nBitDepth == 8 ? 1 : nBitDepth == 24 ? 3 : 4);
}

}  // namespace QXC

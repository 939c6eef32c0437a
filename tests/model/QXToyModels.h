/// @file
/// A model format of the tests' own, whose parser does as it is told.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <functional>
#include <memory>

namespace QXC {

/// While an object lives, files that end in ".toy" are read without being looked at: a path that ends in "broken.toy"
/// fails, "empty.toy" is read but brings no model, "nameless.toy" brings one that has no name, and every other path a
/// model of that name.
class QXToyModels {
public:
  static constexpr int Type = QXFileType::EM_FIRST_CUSTOM + 81;

  QXToyModels() {
    ms_nOpened = 0;
    QXFileTypeRow row;
    row.m_nType = Type;
    row.m_eKind = EM_FILE_MODEL;
    row.m_strExtensions = L".toy";
    row.m_pfnCreate = [] { return static_cast<QXFileParser*>(new Parser); };
    row.m_pfnDestroy = [](QXFileParser* pParser) { delete pParser; };
    QXFileParseManager::RegisterFileType(row);
  }
  QXToyModels(QXToyModels const&) = delete;
  QXToyModels& operator=(QXToyModels const&) = delete;
  ~QXToyModels() {
    ms_OnOpen = nullptr;
    ms_bFail = false;
    QXFileParseManager::UnregisterFileType(Type);
  }

  /// Files that parsers were asked to open.
  static inline int ms_nOpened = 0;
  /// Parsers that exist.
  static inline int ms_nParsers = 0;
  /// Nothing can be read.
  static inline bool ms_bFail = false;
  /// Called while a file is open.
  static inline std::function<void()> ms_OnOpen;

private:
  class Parser : public QXFileParseModel {
  public:
    Parser() { ++ms_nParsers; }
    ~Parser() override { --ms_nParsers; }

    unsigned char Open(QXImportParams* pParams) override {
      ++ms_nOpened;
      if (ms_OnOpen) ms_OnOpen();
      QdcUnicodeString const strPath = pParams->GetFilePathName();
      if (ms_bFail || pParams->GetFileType() != Type || !pParams->GetText().IsEmpty() || Ends(strPath, L"broken.toy"))
        return 0;
      if (Ends(strPath, L"empty.toy")) return 1;
      auto pInfo = std::make_unique<ModelDataInfo>();
      if (!Ends(strPath, L"nameless.toy")) pInfo->SetName(strPath);
      SetModelDataInfo(pInfo.release());
      return 1;
    }
    QdcUnicodeString const& GetErrorText() const override { return m_strError; }

  private:
    static bool Ends(QdcUnicodeString const& strPath, wchar_t const* szEnd) {
      QdcUnicodeString const strEnd(szEnd);
      return strPath.Right(strEnd.GetLength()) == strEnd;
    }

    QdcUnicodeString m_strError;
  };
};

}  // namespace QXC

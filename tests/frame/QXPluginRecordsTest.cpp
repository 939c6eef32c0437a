// The small records: plug-in descriptions, image operator, uniform buffer, texture and its manager.
#include <cstring>
#include <utility>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXPluginConfig.h>
#include <QxGraphics3D/frame/QXPluginDefine.h>
#include <QxGraphics3D/frame/QXPluginImageOperator.h>
#include <QxGraphics3D/frame/QXUniformBuffer.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include "../QXBareTexture.h"

namespace QXC {
namespace {

/// The table of virtual operations of an object.
void** TableOf(void const* pObject) {
  void** pTable = nullptr;
  std::memcpy(&pTable, pObject, sizeof pTable);
  return pTable;
}

TEST(QXPluginConfig, CopiesAndMovesCarryAllThreeFields) {
  QXPluginConfig config;
  EXPECT_TRUE(config.m_strName.IsEmpty());
  config.m_nNumber = 7;
  config.m_strName = L"ogre";
  config.m_bEnabled = 1;
  QXPluginConfig const copy(config);
  QXPluginConfig assigned;
  assigned = config;
  QXPluginConfig source(config);
  QXPluginConfig const moved(std::move(source));
  QXPluginConfig moveAssigned;
  moveAssigned = QXPluginConfig(config);
  QXPluginConfig const& assignedConst = assigned;
  QXPluginConfig const& moveAssignedConst = moveAssigned;
  for (QXPluginConfig const* pConfig : {&copy, &assignedConst, &moved, &moveAssignedConst}) {
    EXPECT_EQ(pConfig->m_nNumber, 7);
    EXPECT_TRUE(pConfig->m_strName == L"ogre");
    EXPECT_EQ(pConfig->m_bEnabled, 1);
  }
}

TEST(QXPluginDefine, ConstructorTakesTypeCreateFunctionAndHandleInThatOrder) {
  int nCreate = 0;
  int nHandle = 0;
  QXPluginDefine const define(3, &nCreate, &nHandle);
  EXPECT_EQ(define.GetType(), 3);
  EXPECT_EQ(define.GetCreateFunc(), &nCreate);
  EXPECT_EQ(define.GetHandle(), &nHandle);
}

class QXTestImageOperator final : public QXPluginImageOperator {
public:
  unsigned char CanLoad(unsigned char const*, unsigned int) const override { return 1; }
  unsigned char GetSize(QdcUnicodeString const&, unsigned int&, unsigned int&) override { return 2; }
  unsigned char Load(QdcUnicodeString const&, QdcArray<unsigned char>&, unsigned int&, unsigned int&) override {
    return 3;
  }
  unsigned char LoadFromMemory(
      unsigned char const*, unsigned long long, QdcArray<unsigned char>&, unsigned int&, unsigned int&) override {
    return 4;
  }
  unsigned char Save(QdcUnicodeString const&, unsigned char const*, unsigned int, unsigned int, int) override {
    return 5;
  }
  unsigned char CanSave() const override { return 6; }
  QdcUnicodeString GetExtName(int) const override { return L".abc"; }
};

TEST(QXPluginImageOperator, BaseHandlesOneExtension) {
  QXTestImageOperator imageOperator;
  EXPECT_EQ(imageOperator.GetExtNameCount(), 1);
  EXPECT_EQ(sizeof(QXPluginImageOperator), sizeof(void*));
}

TEST(QXPluginImageOperator, TheCountStandsSeventhAndThereIsNoDestructorAmongTheSlots) {
  QXTestImageOperator imageOperator;
  void** const pTable = TableOf(&imageOperator);
  EXPECT_EQ(reinterpret_cast<unsigned char (*)(void const*)>(pTable[5])(&imageOperator), 6);
  EXPECT_EQ(reinterpret_cast<int (*)(void const*)>(pTable[6])(&imageOperator), 1);
}

TEST(QXUniformBuffer, BaseAcceptsDefinitionsAndDoesNothing) {
  QXUniformBuffer buffer;
  buffer.AddUniformDefinition(L"world", 64, 2);
  buffer.Initialize();
  EXPECT_EQ(sizeof(QXUniformBuffer), sizeof(void*));
}

TEST(QXUniformBuffer, OperationsStandBehindTheDestructorInTheirOrder) {
  class Buffer : public QXUniformBuffer {
  public:
    void AddUniformDefinition(QdcUnicodeString const&, unsigned int nSize, unsigned int nCount) override {
      m_nBytes += nSize * nCount;
    }
    void Initialize() override { m_nBytes *= 10; }
    unsigned int m_nBytes = 0;
  } buffer;
  void** const pTable = TableOf(static_cast<QXUniformBuffer*>(&buffer));
  QdcUnicodeString const strName(L"world");
  using AddProc = void (*)(void*, QdcUnicodeString const&, unsigned int, unsigned int);
  reinterpret_cast<AddProc>(pTable[2])(&buffer, strName, 64, 2);
  EXPECT_EQ(buffer.m_nBytes, 128u);
  reinterpret_cast<void (*)(void*)>(pTable[3])(&buffer);
  EXPECT_EQ(buffer.m_nBytes, 1280u);
}

TEST(QXTexture, CountsItsUsersWithoutCheckingThem) {
  QXBareTexture texture;
  EXPECT_EQ(texture.GetRef(), 0);
  texture.AddRef();
  texture.AddRef();
  EXPECT_EQ(texture.GetRef(), 2);
  texture.DecRef();
  texture.DecRef();
  texture.DecRef();
  EXPECT_EQ(texture.GetRef(), -1);
}

TEST(QXTextureManager, BaseHoldsNothing) {
  class Manager : public QXTextureManager {
  public:
    QXTexture* GetTexture(QdcUnicodeString const&, unsigned char) override { return nullptr; }
    unsigned char ManagerOperation2(QdcUnicodeString const&) const override { return 0; }
  } manager;
  manager.DeleteUnusedTextures();
  manager.Release();
  manager.DeleteTexture(1);
  EXPECT_EQ(manager.CreateTexture(), nullptr);
}

}  // namespace
}  // namespace QXC

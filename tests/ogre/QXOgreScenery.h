/// @file
/// A running renderer and things to look at.
#pragma once

#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>
#include <QxGraphics3D/view/QXCamera.h>

namespace QXC {

/// Text of a failure for messages.
inline std::string Text(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

/// The module, loaded once for the process as hosts do.
inline QXPluginModule& OgreModule() {
  static QXPluginModule* const s_pModule = [] {
    QdcUnicodeString strError;
    QXPluginModule* const pModule = QXPluginModule::LoadFile(
        QdcUnicodeString::FromUTF8(QX_OGRE_MODULE), QX_PLUGIN_KIND_RENDERER, L"ogre", strError);
    if (!pModule) {
      ADD_FAILURE() << Text(strError);
      std::abort();
    }
    return pModule;
  }();
  return *s_pModule;
}

struct QXOgreDeleter {
  void operator()(QXGraphics3D* pGraphics3D) const {
    pGraphics3D->ShutDown();
    OgreModule().Destroy(pGraphics3D);
  }
};
using QXOgrePtr = std::unique_ptr<QXGraphics3D, QXOgreDeleter>;

/// A renderer that is not initialised yet.
inline QXOgrePtr MakeRenderer() {
  QdcUnicodeString strError;
  QXOgrePtr pGraphics3D(static_cast<QXGraphics3D*>(OgreModule().Create(strError)));
  EXPECT_NE(pGraphics3D, nullptr) << Text(strError);
  return pGraphics3D;
}

/// One pixel of a picture.
struct QXPixel {
  int r, g, b, a;
  bool operator==(QXPixel const&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, QXPixel const& pixel) {
  return stream << "(" << pixel.r << ", " << pixel.g << ", " << pixel.b << ", " << pixel.a << ")";
}

/// A target's picture as read back.
class QXPicture {
public:
  explicit QXPicture(QXRenderTarget& target)
      : m_nWidth(target.GetWidth()), m_arrBytes(std::size_t{target.GetWidth()} * target.GetHeight() * 4, 0xCD) {
    m_bRead = target.CopyToMemory(m_arrBytes.data(), static_cast<unsigned int>(m_arrBytes.size()));
    EXPECT_EQ(m_bRead, 1) << "the picture cannot be read back";
  }
  /// Counted from the upper left corner.
  QXPixel At(unsigned int x, unsigned int y) const {
    unsigned char const* const p = m_arrBytes.data() + (std::size_t{y} * m_nWidth + x) * 4;
    return {p[2], p[1], p[0], p[3]};
  }
  std::vector<unsigned char> const& GetBytes() const { return m_arrBytes; }

private:
  unsigned int m_nWidth;
  std::vector<unsigned char> m_arrBytes;
  unsigned char m_bRead;
};

/// A corner of a test mesh.
struct QXCorner {
  float x, y, z;
  QXVector3d normal = QXVector3d::ZERO;
  unsigned int color = 0xFFFFFFFF;
};

/// Corners with normals and colours as asked for, without ranges.
inline std::unique_ptr<QXRenderOperationMultiIndex> MakeMesh(
    std::vector<QXCorner> const& arrCorners, bool bNormals = false, bool bColors = false) {
  auto pMesh = std::make_unique<QXRenderOperationMultiIndex>();
  auto* const pBlock = pMesh->m_pVertexBlock = new QXVertexBlock;
  pBlock->m_nVertexCount = static_cast<unsigned int>(arrCorners.size());
  pBlock->m_nNormalOffset = bNormals ? short{3} : short{-1};
  pBlock->m_nColorOffset = static_cast<short>(bColors ? (bNormals ? 6 : 3) : -1);
  pBlock->m_nStride = static_cast<unsigned short>(3 + (bNormals ? 3 : 0) + (bColors ? 1 : 0));
  pBlock->m_pBuffer = new float[arrCorners.size() * pBlock->m_nStride];
  float* p = pBlock->m_pBuffer;
  for (QXCorner const& corner : arrCorners) {
    for (float const f : {corner.x, corner.y, corner.z}) *p++ = f;
    if (bNormals)
      for (double const d : {corner.normal.x, corner.normal.y, corner.normal.z}) *p++ = static_cast<float>(d);
    if (bColors) *p++ = std::bit_cast<float>(corner.color);
  }
  return pMesh;
}

/// Adds a range of 16-bit (T unsigned short) or 32-bit (T unsigned int) indices.
template <class T>
QXVertexIndexPackage* AddRange(QXRenderOperationMultiIndex& mesh, std::vector<T> const& arrIndices,
    QXColorValue3D const& color = QXColorValue3D::White) {
  auto* const pPackage = new QXVertexIndexPackage;
  pPackage->m_nIndexType = sizeof(T) == 4 ? 1 : 0;
  auto* const pIndices = new T[arrIndices.size()];
  std::copy(arrIndices.begin(), arrIndices.end(), pIndices);
  pPackage->m_pIndices = pIndices;
  pPackage->m_nIndexNum = static_cast<unsigned int>(arrIndices.size());
  pPackage->m_Color = color;
  mesh.SetAt(pPackage, nullptr);
  return pPackage;
}

/// A renderer with a texture target of 64 x 64 pixels, one camera over it and one viewport that fills it. The camera
/// looks down from z = 10 on -1..1 in x and y (so one unit is 32 pixels) with z 0..20 visible below it. The sun is off:
/// colours are what they are. Targets of the fixture have a dark blue background.
class QXOgreScenery : public testing::Test {
public:
  static constexpr unsigned int SIZE = 64;

protected:
  void SetUp() override {
    m_pGraphics3D = MakeRenderer();
    ASSERT_EQ(m_pGraphics3D->Initialize(L""), 1) << Text(m_pGraphics3D->GetErrorText());
    m_pTarget = MakeTarget(L"picture");
    m_pCamera = MakeCamera(L"camera");
    m_pViewport = AddViewport(*m_pTarget, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  }
  void TearDown() override {
    for (QXRenderOperation3D* const pOperation : m_arrOperations) delete pOperation;
  }

  QXRenderTarget* MakeTarget(wchar_t const* szName, unsigned int nWidth = SIZE, unsigned int nHeight = SIZE) {
    QXRenderTarget* const pTarget =
        m_pGraphics3D->CreateRenderTexture(szName, PF_A8R8G8B8, nWidth, nHeight, 0, 32, L"");
    EXPECT_NE(pTarget, nullptr) << Text(m_pGraphics3D->GetErrorText());
    if (!pTarget) return nullptr;
    m_pGraphics3D->AttachRenderTarget(pTarget);
    pTarget->SetActive(1);
    pTarget->SetSunLightEnable(0);
    return pTarget;
  }
  /// Looks down as the class says.
  QXCamera* MakeCamera(wchar_t const* szName, wchar_t const* szScene = L"3D") {
    QXCamera* const pCamera = m_pGraphics3D->CreateCamera(szName, szScene);
    EXPECT_NE(pCamera, nullptr);
    if (!pCamera) return nullptr;
    pCamera->SetPosition(0.0, 0.0, 10.0);
    pCamera->SetProjectionType(PROJECTION_ORTHOGRAPHIC);
    pCamera->SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(-1.0, 1.0, -1.0, 1.0, 0.0, 20.0));
    return pCamera;
  }
  QXViewport* AddViewport(QXRenderTarget& target, QXCamera& camera, int nZOrder, double dLeft, double dBottom,
      double dWidth, double dHeight) {
    QXViewport* const pViewport = target.AddViewport(&camera, nZOrder, dLeft, dBottom, dWidth, dHeight);
    pViewport->m_BackgroundColor = QXColorValue3D(0.0, 0.0, 0.2, 1.0);
    return pViewport;
  }
  /// A drawable of the mesh in the scene.
  QXRenderOperation3D* Draw(QXRenderOperationMultiIndex& mesh, wchar_t const* szScene = L"3D") {
    QXRenderOperation3D* const pOperation =
        m_pGraphics3D->GetRenderOperationManager()->CreateRenderOperation3D(szScene, 1);
    pOperation->SetRenderOperationMultiIndex(&mesh);
    m_arrOperations.push_back(pOperation);
    return pOperation;
  }
  /// A square of one colour in the plane z, from (x0, y0) to (x1, y1).
  QXRenderOperation3D* DrawSquare(float x0, float y0, float x1, float y1, float z, QXColorValue3D const& color) {
    auto const pMesh = MakeMesh({{x0, y0, z}, {x1, y0, z}, {x1, y1, z}, {x0, y1, z}});
    AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, color);
    return Draw(*pMesh);
  }
  /// One frame, and the picture of the target.
  QXPicture Frame(QXRenderTarget* pTarget = nullptr) {
    m_pGraphics3D->BeginGeometryCount();
    m_pGraphics3D->UpdateAllRenderTargets();
    return QXPicture(pTarget ? *pTarget : *m_pTarget);
  }

  static constexpr QXColorValue3D RED{1.0, 0.0, 0.0, 1.0};
  static constexpr QXColorValue3D GREEN{0.0, 1.0, 0.0, 1.0};
  static constexpr QXPixel RED_PIXEL{255, 0, 0, 255};
  static constexpr QXPixel GREEN_PIXEL{0, 255, 0, 255};
  static constexpr QXPixel BACKGROUND_PIXEL{0, 0, 51, 255};

  QXOgrePtr m_pGraphics3D;
  QXRenderTarget* m_pTarget = nullptr;
  QXCamera* m_pCamera = nullptr;
  QXViewport* m_pViewport = nullptr;
  std::vector<QXRenderOperation3D*> m_arrOperations;
};

}  // namespace QXC

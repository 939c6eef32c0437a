/// @file
/// A running renderer with a target, for one picture.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/view/QXCamera.h>

#include <examples/gallery/QXGalleryMesh.h>

namespace QXGallery {

/// Part of the picture, fractions of it, counted from the lower left corner.
struct QXGalleryPart {
  double m_dLeft = 0.0;
  double m_dBottom = 0.0;
  double m_dWidth = 1.0;
  double m_dHeight = 1.0;
};

/// The renderer on OGRE with one texture target of four samples a pixel, which shows the scene "3D" unless a view says
/// otherwise. What is made here lives as long as the stage.
class QXGalleryStage {
public:
  static constexpr unsigned int WIDTH = 640;
  static constexpr unsigned int HEIGHT = 360;
  /// Of the views' backgrounds.
  static constexpr QXC::QXColorValue3D SKY{0.62, 0.76, 0.9, 1.0};

  QXGalleryStage() = default;
  ~QXGalleryStage();
  QXGalleryStage(QXGalleryStage const&) = delete;
  QXGalleryStage& operator=(QXGalleryStage const&) = delete;

  /// @return  empty, or the reason
  std::string Start();
  /// The renderer's words for what went wrong last.
  std::string GetErrorText() const;

  QXC::QXGraphics3D& GetGraphics3D() { return *m_pGraphics3D; }
  QXC::QXRenderTarget& GetTarget() { return *m_pTarget; }
  QXC::QXRenderOperationManager& GetManager() { return *m_pGraphics3D->GetRenderOperationManager(); }

  /// An upright camera at one point that looks to another, and a viewport for it above those that are there. The camera computes
  /// its projection itself, with near and far from the scene's bounds, unless it is given one.
  QXC::QXCamera& AddView(QXC::QXVector3d const& vecEye, QXC::QXVector3d const& vecLook, QXGalleryPart const& part = {},
      wchar_t const* szScene = L"3D");
  /// A drawable of a mesh.
  QXC::QXRenderOperation3D& Add(QXGalleryMesh const& mesh, wchar_t const* szScene = L"3D");
  /// Keeps an object that the host has to delete, until just before the renderer goes; of two the later one goes first.
  template <class Object>
  Object& Keep(Object* pObject) {
    m_arrKept.emplace_back(pObject);
    return *pObject;
  }
  /// A line over the picture, in white on a dark shade, pixels from the lower left corner to where its baseline begins.
  void Write(QXC::QdcUnicodeString const& strText, double dX, double dY);

  /// One frame of every view, and the lines.
  void DrawFrame();
  /// Writes the picture of the last frame to a PNG file.
  /// @return  empty, or the reason
  std::string Save(std::string const& strPath);

private:
  struct Line {
    QXC::QdcUnicodeString m_strText;
    double m_dX;
    double m_dY;
  };

  void WriteLines();

  std::unique_ptr<QXC::QXPluginModule> m_pModule;
  QXC::QXGraphics3D* m_pGraphics3D = nullptr;
  QXC::QXRenderTarget* m_pTarget = nullptr;
  QXC::QXViewport* m_pLineViewport = nullptr;
  std::vector<std::shared_ptr<void>> m_arrKept;
  std::vector<Line> m_arrLines;
  int m_nViews = 0;
};

}  // namespace QXGallery

/// @file
/// Quads that are made anew for each view.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgrePrerequisites.h>

#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreRenderable.h>

namespace QXC {

class QXOgreDevice;
class QXOgreTextureUse;

/// Four-sided pieces with colours and one texture for each draw operation, in the coordinates of the eye. For each view:
/// Clear, Add, Upload, then Queue for runs of them. Allocates only while there are more than ever before.
class QXOgreQuads final {
public:
  struct Vertex {
    float m_fPosition[3];
    float m_fColor[4];
    float m_fTexCoord[2];
  };
  /// Neighbouring corners follow each other.
  using Corners = std::array<Vertex, 4>;
  /// One draw operation.
  struct Run {
    std::size_t m_nFirst = 0;
    std::size_t m_nEnd = 0;
    /// Null: plain colours. Must live until the view is drawn.
    QXOgreTextureUse const* m_pUse = nullptr;
    /// The coordinate sets follow from the texture.
    QXOgreSurface m_Surface;
    /// In front of the eye; the order among what is blended.
    Ogre::Real m_fDepth = 0.0F;
  };

  explicit QXOgreQuads(QXOgreDevice& device);
  ~QXOgreQuads();
  QXOgreQuads(QXOgreQuads const&) = delete;
  QXOgreQuads& operator=(QXOgreQuads const&) = delete;

  void Clear();
  void Add(Corners const& corners) { m_arrQuads.push_back(corners); }
  std::size_t GetCount() const { return m_arrQuads.size(); }
  void Upload();
  /// Puts a run of what was uploaded into the queue.
  void Queue(Run const& run, Ogre::RenderQueue& queue);

private:
  struct Batch;

  void MakeRoom();

  QXOgreDevice& m_Device;
  std::vector<Corners> m_arrQuads;
  std::unique_ptr<Ogre::VertexData> m_pVertexData;
  Ogre::HardwareVertexBufferSharedPtr m_pVertexBuffer;
  Ogre::HardwareIndexBufferSharedPtr m_pIndexBuffer;
  std::vector<std::unique_ptr<Batch>> m_arrBatches;
  std::vector<QXOgreBinding> m_arrBindings;
  std::size_t m_nRoom;
  std::size_t m_nBatches;
};

}  // namespace QXC

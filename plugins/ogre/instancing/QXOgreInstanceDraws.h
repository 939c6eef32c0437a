/// @file
/// The draw operations of a mesh at many places.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include <OgreHardwareVertexBuffer.h>
#include <OgrePrerequisites.h>

#include <plugins/ogre/QXOgreRenderable.h>
#include <plugins/ogre/QXOgreView.h>

namespace QXC {

class QXOgreDevice;
class QXOgreDrawable;
class QXOgrePlacements;

/// The buffer of the instances that a view sees, and renderables that draw the ranges of a drawable with it. They look
/// as the drawable does, which may change, be drawn elsewhere and take other geometry at any time.
class QXOgreInstanceDraws final {
public:
  explicit QXOgreInstanceDraws(QXOgreDevice& device);
  ~QXOgreInstanceDraws();
  QXOgreInstanceDraws(QXOgreInstanceDraws const&) = delete;
  QXOgreInstanceDraws& operator=(QXOgreInstanceDraws const&) = delete;

  /// Takes over geometry and look of the mesh where they have changed. Allocates only then, and when there are more
  /// placements than ever before.
  /// @param nMost  placements in one draw operation, at least 1
  void Follow(QXOgreDrawable& mesh, QXOgrePlacements const& placements, std::size_t nMost);
  /// Whether any range lets through what is behind it.
  bool IsBlended() const { return m_bBlended; }
  /// Sends the placements that were collected and puts their draw operations into the queue; mesh and placements are
  /// those of Follow.
  /// @param bIdentifiers  in place of colours
  void Queue(QXOgreDrawable const& mesh, QXOgrePlacements const& placements, std::size_t nSeen, bool bIdentifiers,
      Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts);
  /// Releases everything on the GPU.
  void Clear();

private:
  /// Some of the instances: as many as go into one operation.
  struct Batch {
    std::unique_ptr<Ogre::VertexData> m_pVertexData;
    /// One a range.
    std::vector<std::unique_ptr<QXOgreRenderable>> m_arrRenderables;
  };

  void Dress(QXOgreDrawable const& mesh);
  void Dress(QXOgreDrawable const& mesh, Batch& batch) const;
  /// Whether the textures of all ranges still fit what they are drawn with.
  bool PrepareTextures(QXOgreDrawable& mesh);
  void MakeRoom(std::size_t nInstances);
  void DemandBatches(QXOgreDrawable const& mesh, std::size_t nCount);
  std::unique_ptr<Ogre::VertexData> MakeVertexData(QXOgreDrawable const& mesh, std::size_t nFirstInstance) const;
  void FindSets(QXOgreDrawable const& mesh);

  QXOgreDevice& m_Device;
  std::vector<Batch> m_arrBatches;
  std::vector<Ogre::MaterialPtr> m_arrMaterials;
  Ogre::HardwareVertexBufferSharedPtr m_pBuffer;
  std::size_t m_nRoom;
  std::size_t m_nMost;
  /// Sets 6 and 7 share their places with what instances bring, so the sets that are read move together.
  std::array<int, 8> m_arrSets;
  QXOgrePlace m_Place;
  unsigned long long m_nGeometryVersion;
  unsigned long long m_nLookVersion;
  bool m_bTransparentColors;
  bool m_bBlended;
};

}  // namespace QXC

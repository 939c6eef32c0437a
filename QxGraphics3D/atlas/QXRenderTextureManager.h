/// @file
/// The atlas of what is rendered rather than loaded.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

#include <atomic>
#include <map>
#include <memory>

namespace QXC {

namespace detail {
template <class Record, class Data>
class QXLiveRecords;
class QXQuadtreeAtlas;
}  // namespace detail

class QXGraphics3D;
class QXRenderTarget;
class QXRenderTexturePatch;
class QXRenderTextureManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXRenderTextureManager>;

/// Named square patches of shared render textures of 2048 x 2048 pixels, so that many small things that are rendered
/// share a few targets. Each big texture is one render target and one scene node of the renderer, both under its name
/// "RenderTexture_BigTexture_0", "..._1" and so on; the node is shown only while its texture is rendered.
///
/// Patches are counted: every GetRenderTexturePatch wants its RemoveRenderTexturePatch. The big texture goes with its
/// last patch.
///
/// Threads: the render thread, where the renderer may be called; AddUselessTexture from any. One recursive mutex
/// guards all but SetNeedRender and the rendering itself.
/// Failure: a patch without a place (QXRenderTexturePatch::IsPlaced) for a size above 2048, without a renderer, and
/// where the renderer gives no target. It is counted like others.
class QXGRAPHICS3D_API QXRenderTextureManager : public QXSingleton<QXRenderTextureManager> {
public:
  QXRenderTextureManager();
  QXRenderTextureManager(QXRenderTextureManager const&) = delete;
  QXRenderTextureManager& operator=(QXRenderTextureManager const&) = delete;
  /// Clears.
  ~QXRenderTextureManager();

  /// Both make the manager at first use; it lives to the end of the process.
  static QXRenderTextureManager& GetSingleton();
  static QXRenderTextureManager* GetSingletonPtr();

  /// The renderer that targets and nodes are made with, not owned; null takes it away. To be set before the first patch
  /// is asked for. Whoever deletes the renderer calls Clear before: QXGraphics3D::ClearResource does not.
  void SetGraphics3D(QXGraphics3D* pGraphics);

  /// The patch of that name with one more user, made if there is none. It is never null and stays the manager's.
  ///
  /// Asking again for a name is no mere look-up: the patch moves to a new place of the size given, and its old place
  /// stays taken until Clear. Hold on to the pointer instead. If there is no place of the new size, it stays where it was.
  QXRenderTexturePatch* GetRenderTexturePatch(
      QdcUnicodeString const& strName, unsigned int nHeight, unsigned int nWidth);
  /// One user less. With the last one the patch is deleted and its place free; with the last place of a big texture its
  /// node and target go too. An unknown name is ignored.
  ///
  /// A mark of SetNeedRender outlives the big texture: one that gets the same index later may be rendered once for
  /// nothing.
  void RemoveRenderTexturePatch(QdcUnicodeString const& strName);
  /// Frees the patch's place and takes one of its present size. The big texture stays even if it is empty now. Called by
  /// QXRenderTexturePatch::Resize; the two numbers are not read. An unknown name is ignored.
  void ResizeRenderTexturePatch(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight);

  /// Notes patches whose users let go of them on a thread that may not touch the renderer. Each entry is one
  /// RemoveRenderTexturePatch at the next RenderToTexture or ClearUselessTexture; patches that are gone by then are
  /// passed over. The list survives Clear.
  void AddUselessTexture(QdcArray<QXRenderTexturePatch*> arrPatches);
  /// Does that now.
  void ClearUselessTexture();

  /// Marks the patch's big texture for RenderToTexture. Takes no lock.
  void SetNeedRender(QXRenderTexturePatch* pPatch);
  /// Drops useless patches, then renders every marked big texture once, in the order of their indexes, however many of
  /// its patches were marked. To be called once a frame. Without a renderer nothing happens, and useless patches wait.
  /// Cost: allocates nothing if nothing changed.
  void RenderToTexture();

  /// Deletes all patches, targets and nodes and forgets the renderer.
  void Clear();

private:
  friend class QXRenderTexturePatch;

  /// Nothing but the address has to be known of a patch.
  struct NoData {};
  using LivePatches = detail::QXLiveRecords<QXRenderTexturePatch, NoData>;

  /// Gives the patch a place of its size, and the place's big texture a target if it has none. 0 with the patch as it
  /// was, if there is no such place or no target.
  unsigned char FindSpaceInBigTextures(QXRenderTexturePatch* pPatch);
  bool HasOrMakesTarget(int nIndex);
  /// Takes the patch off its place. True if its big texture has no patches left.
  bool ReleasePlace(QXRenderTexturePatch& patch);
  void DropBigTexture(int nIndex);
  void DeleteTarget(QXRenderTarget* pTarget);
  void RenderBigTexture(int nIndex, QXRenderTarget* pTarget);
  void RemoveUseless();

  /// Owned.
  std::map<QdcUnicodeString, QXRenderTexturePatch*> m_mapPatches;
  std::unique_ptr<LivePatches> m_pLivePatches;
  std::unique_ptr<detail::QXQuadtreeAtlas> m_pBigTextures;
  /// By the index of the big texture; owned.
  std::map<int, QXRenderTarget*> m_mapRenderTargets;
  std::map<int, bool> m_mapNeedRender;
  QXMutex m_Mutex{1};
  QXGraphics3D* m_pGraphics = nullptr;
  /// Lets a frame without useless patches go without the lock.
  std::atomic<bool> m_bHasUseless{false};
};

}  // namespace QXC

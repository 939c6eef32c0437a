/// @file
/// The pictures of a model, read and ready for textures.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/QXModelTexture.h>

#include <compare>
#include <memory>
#include <string>
#include <vector>

namespace QXC {
class ModelDataInfo;
class QXTexture;
}  // namespace QXC

namespace QXApp {

/// One texture that a model is drawn with: a picture in one of the forms that its meshes ask for.
struct QXTextureKey {
  /// Index of the picture in its model, -1 for none.
  int m_nImage = -1;
  bool m_bRepeat = false;
  /// Mirrored repetitions: the texture holds the picture and its mirror image side by side.
  bool m_bMirrorU = false;
  bool m_bMirrorV = false;
  /// QX_ALPHA_OPAQUE, QX_ALPHA_MASK with its threshold of 1 to 256, or QX_ALPHA_AUTO for the picture's own alpha.
  QXC::QXModelAlpha m_eAlpha = QXC::QX_ALPHA_AUTO;
  int m_nThreshold = 0;

  // The check takes the zero inside the comparison that the compiler writes for a pointer.
  auto operator<=>(QXTextureKey const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// The pictures that cover a model's meshes, each read once. Still ones are kept as 4-byte pixels with power-of-two
/// edges of 8192 at most, animated ones as the bytes of their file, which the renderer plays, KTX2 files as the library
/// reads them.
class QXModelPictures {
public:
  QXModelPictures();
  QXModelPictures(QXModelPictures&&) noexcept;
  QXModelPictures& operator=(QXModelPictures&&) noexcept;
  ~QXModelPictures();

  /// Reads what the meshes refer to.
  /// @param vecProblems  gets one line for each picture that cannot be read, with its name and what to do
  void Load(QXC::ModelDataInfo const& model, std::vector<std::string>& vecProblems);

  /// Reads one more picture, from a file.
  /// @return  its index, or -1 with a line in vecProblems
  int AddFile(std::string const& strPath, std::vector<std::string>& vecProblems);

  /// Whether the picture was read; meshes are drawn in their colours where it was not, and for -1.
  bool IsUsable(int nImage) const;
  /// Whether some pixel of a usable picture lets something through.
  bool IsTransparent(int nImage) const;
  bool IsAnimated(int nImage) const;
  /// Neither animated nor a KTX2 file: one whose pixels can be mirrored and masked.
  bool IsStill(int nImage) const;
  bool HasAnimated() const;

  /// Name of a texture: pictures in files are shared by their paths, carried ones by the path of their model.
  std::string GetTextureName(QXTextureKey const& key) const;
  /// Gives a fresh texture the picture. Animated pictures and KTX2 files cannot be mirrored or masked and are repeated
  /// and blended instead.
  void Fill(QXTextureKey const& key, QXC::QXTexture& texture) const;

  /// Writes a still picture in the form of a texture as a PNG, or the file of one that moves or is KTX2.
  /// @return  empty, or the reason
  std::string Write(QXTextureKey const& key, std::string const& strPath) const;
  /// The extension of what Write writes.
  std::string GetWrittenExtension(QXTextureKey const& key) const;

private:
  struct Picture;
  std::vector<std::unique_ptr<Picture>> m_vecPictures;
};

}  // namespace QXApp

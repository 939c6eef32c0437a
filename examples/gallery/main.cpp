// Draws one picture per feature with the renderer on OGRE: each shows how a host asks for that feature.
// usage: gallery --list | gallery --all FOLDER | gallery NAME FILE.png
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

using namespace QXGallery;

static int List() {
  for (QXGalleryPicture const& picture : GetAllPictures())
    std::printf("%s  %s\n", picture.m_szName, picture.m_szDescription);
  return 0;
}

/// Each picture on a stage of its own, so that none depends on those before it.
static std::string Draw(QXGalleryPicture const& picture, std::string const& strPath) {
  QXGalleryStage stage;
  std::string const strReason = stage.Start();
  if (!strReason.empty()) return strReason;
  if (!picture.m_pfnDraw(stage)) return "the renderer did not give what the picture needs: " + stage.GetErrorText();
  stage.DrawFrame();
  return stage.Save(strPath);
}

static int Report(QXGalleryPicture const& picture, std::string const& strReason) {
  if (strReason.empty()) return 0;
  std::fprintf(stderr, "gallery: %s: %s\n", picture.m_szName, strReason.c_str());
  return 1;
}

static int DrawAll(std::string const& strFolder) {
  int nFailed = 0;
  for (QXGalleryPicture const& picture : GetAllPictures())
    nFailed += Report(picture, Draw(picture, strFolder + "/" + picture.m_szName + ".png"));
  return nFailed == 0 ? 0 : 1;
}

static int DrawOne(char const* szName, char const* szPath) {
  for (QXGalleryPicture const& picture : GetAllPictures())
    if (std::strcmp(picture.m_szName, szName) == 0) return Report(picture, Draw(picture, szPath));
  std::fprintf(stderr, "gallery: there is no picture '%s'; 'gallery --list' names them\n", szName);
  return 1;
}

int main(int nArgumentCount, char** arrArguments) {
  try {
    if (nArgumentCount == 2 && std::strcmp(arrArguments[1], "--list") == 0) return List();
    if (nArgumentCount == 3 && std::strcmp(arrArguments[1], "--all") == 0) return DrawAll(arrArguments[2]);
    if (nArgumentCount == 3 && arrArguments[1][0] != '-') return DrawOne(arrArguments[1], arrArguments[2]);
  } catch (std::exception const& exception) {
    std::fprintf(stderr, "gallery: %s\n", exception.what());
    return 1;
  }
  std::fprintf(stderr, "usage: gallery --list | gallery --all FOLDER | gallery NAME FILE.png\n");
  return 2;
}

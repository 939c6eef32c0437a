// Loading a model: the reader against assimp alone.
//
// Every case writes one model with assimp's exporter of the format, then three roads take turns: the reader's Open, as
// QXModelManager::Load calls it, which imports in a process of its own and hands over a finished ModelDataInfo;
// Importer::ReadFile of the same file in this process, with the steps that bring the same result (triangles alone,
// equal vertices joined, normals where the file has none); and that same ReadFile in a process of its own. The second
// finds all memory in place from the round before, and is what "ratio" is over; a first import in a process finds none,
// as the third, which "process_ratio" is over. The quickest of each counts, since other programs only ever add to it.
//
// Time is that of the processor, in this process and in those that it starts, so that a second process is no free
// help; "wall" is what a caller waits. Releasing the result is in no road. What comes out is compared before anything is timed.
//
// "grid" is one mesh of so many triangles, "city" as many in meshes of 18 with a material and a node each.

#include <plugins/assimp/QXAssimpFileParser.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

namespace {

/// What all processes of this program have had of the processor, those it started and waited for included.
double ProcessorSeconds() {
  double dSeconds = 0.0;
  for (auto const eWho : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    getrusage(eWho, &usage);
    for (timeval const& time : {usage.ru_utime, usage.ru_stime})
      dSeconds += static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  }
  return dSeconds;
}

/// The quickest of the passes that were timed with it.
struct Timing {
  template <class Pass>
  void Time(Pass pass) {
    auto const wallStart = std::chrono::steady_clock::now();
    double const dStart = ProcessorSeconds();
    pass();
    m_dProcessor = std::min(m_dProcessor, ProcessorSeconds() - dStart);
    std::chrono::duration<double> const wall = std::chrono::steady_clock::now() - wallStart;
    m_dWall = std::min(m_dWall, wall.count());
  }
  double m_dProcessor = std::numeric_limits<double>::infinity();
  double m_dWall = std::numeric_limits<double>::infinity();
};

/// A mesh of quads over a field of heights, in rows of nSide.
aiMesh* MakeGrid(unsigned int nSide) {
  auto* pMesh = new aiMesh;
  unsigned int const nEdge = nSide + 1;
  pMesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
  pMesh->mNumVertices = nEdge * nEdge;
  pMesh->mVertices = new aiVector3D[pMesh->mNumVertices];
  pMesh->mNormals = new aiVector3D[pMesh->mNumVertices];
  pMesh->mTextureCoords[0] = new aiVector3D[pMesh->mNumVertices];
  pMesh->mNumUVComponents[0] = 2;
  for (unsigned int i = 0; i < pMesh->mNumVertices; ++i) {
    float const x = static_cast<float>(i % nEdge);
    float const y = static_cast<float>(i / nEdge);
    pMesh->mVertices[i] = aiVector3D(x, y, 3.0F * std::sin(0.07F * x) * std::cos(0.05F * y));
    pMesh->mNormals[i] = aiVector3D(0.0F, 0.6F, 0.8F);
    pMesh->mTextureCoords[0][i] = aiVector3D(x / static_cast<float>(nSide), y / static_cast<float>(nSide), 0.0F);
  }
  pMesh->mNumFaces = 2 * nSide * nSide;
  pMesh->mFaces = new aiFace[pMesh->mNumFaces];
  for (unsigned int i = 0; i < pMesh->mNumFaces; ++i) {
    unsigned int const nCorner = i / 2 / nSide * nEdge + i / 2 % nSide;
    pMesh->mFaces[i].mNumIndices = 3;
    pMesh->mFaces[i].mIndices = i % 2 == 0 ? new unsigned int[3]{nCorner, nCorner + 1, nCorner + nEdge}
                                           : new unsigned int[3]{nCorner + 1, nCorner + nEdge + 1, nCorner + nEdge};
  }
  return pMesh;
}

aiMaterial* MakeMaterial(unsigned int nNumber) {
  auto* pMaterial = new aiMaterial;
  aiString const strName("material" + std::to_string(nNumber));
  aiColor4D const color(static_cast<float>(nNumber % 16) / 15.0F, 0.5F, 0.25F, 1.0F);
  pMaterial->AddProperty(&strName, AI_MATKEY_NAME);
  pMaterial->AddProperty(&color, 1, AI_MATKEY_COLOR_DIFFUSE);
  return pMaterial;
}

/// nMeshes meshes side by side, a material and a node each.
std::unique_ptr<aiScene> MakeScene(unsigned int nMeshes, unsigned int nSide) {
  auto pScene = std::make_unique<aiScene>();
  pScene->mRootNode = new aiNode("root");
  pScene->mNumMeshes = pScene->mNumMaterials = pScene->mRootNode->mNumChildren = nMeshes;
  pScene->mMeshes = new aiMesh*[nMeshes];
  pScene->mMaterials = new aiMaterial*[nMeshes];
  pScene->mRootNode->mChildren = new aiNode*[nMeshes];
  for (unsigned int i = 0; i < nMeshes; ++i) {
    pScene->mMeshes[i] = MakeGrid(nSide);
    pScene->mMeshes[i]->mName = "mesh" + std::to_string(i);
    pScene->mMeshes[i]->mMaterialIndex = i;
    pScene->mMaterials[i] = MakeMaterial(i);
    auto* pNode = new aiNode("node" + std::to_string(i));
    pNode->mParent = pScene->mRootNode;
    pNode->mNumMeshes = 1;
    pNode->mMeshes = new unsigned int[1]{i};
    aiMatrix4x4::Translation(
        aiVector3D(static_cast<float>(i % 100), static_cast<float>(i / 100), 0.0F), pNode->mTransformation);
    pScene->mRootNode->mChildren[i] = pNode;
  }
  return pScene;
}

struct Format {
  char const* m_szExporter;
  char const* m_szExtension;
  bool m_bNormals;
};

constexpr Format Formats[] = {{"obj", ".obj", true}, {"gltf2", ".gltf", true}, {"glb2", ".glb", true},
    {"collada", ".dae", true}, {"fbxa", ".fbx", true}, {"plyb", ".ply", true}, {"stlb", ".stl", true},
    {"3ds", ".3ds", false}};

/// A folder that goes away again.
struct Folder {
  Folder() { std::filesystem::create_directories(m_Path); }
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;
  ~Folder() {
    std::error_code error;
    std::filesystem::remove_all(m_Path, error);
  }
  std::filesystem::path m_Path =
      std::filesystem::temp_directory_path() /
      ("qx3d-bench-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
};

std::unique_ptr<QXC::ModelDataInfo> Read(std::string const& strPath) {
  QXC::QXImportParams params;
  params.SetFilePathName(QXC::QdcUnicodeString::FromUTF8(strPath.c_str()));
  QXAssimp::QXAssimpFileParser parser;
  if (parser.Open(&params) == 0) return nullptr;
  return std::unique_ptr<QXC::ModelDataInfo>(parser.GetModelDataInfo());
}

aiScene const* Import(Assimp::Importer& importer, std::string const& strPath, bool bNormals) {
  return importer.ReadFile(strPath, aiProcess_ValidateDataStructure | aiProcess_Triangulate | aiProcess_SortByPType |
                                        aiProcess_JoinIdenticalVertices |
                                        (bNormals ? 0U : static_cast<unsigned int>(aiProcess_GenSmoothNormals)));
}

/// Import in a process that ends right after it.
void ImportInProcess(std::string const& strPath, bool bNormals) {
  pid_t const nProcess = fork();
  if (nProcess == 0) {
    Assimp::Importer importer;
    _exit(Import(importer, strPath, bNormals) != nullptr ? 0 : 1);
  }
  int nStatus = 1;
  waitpid(nProcess, &nStatus, 0);
  if (nStatus != 0) std::abort();
}

std::uint64_t CountTriangles(aiScene const& scene) {
  std::uint64_t nTriangles = 0;
  for (unsigned int i = 0; i < scene.mNumMeshes; ++i) nTriangles += scene.mMeshes[i]->mNumFaces;
  return nTriangles;
}

/// Whether both roads bring the model that was written.
bool IsRight(std::string const& strPath, bool bNormals, std::uint64_t nTriangles) {
  auto const pModel = Read(strPath);
  Assimp::Importer importer;
  aiScene const* const pScene = Import(importer, strPath, bNormals);
  return pModel != nullptr && pScene != nullptr && pModel->GetTriangleCount() == nTriangles &&
         CountTriangles(*pScene) == nTriangles;
}

void Load(benchmark::State& state) {
  Format const& format = Formats[state.range(0)];
  bool const bCity = state.range(1) != 0;
  auto const nTriangles = static_cast<unsigned int>(state.range(2));
  unsigned int const nMeshes = bCity ? nTriangles / 18 : 1;
  auto const nSide = bCity ? 3U : static_cast<unsigned int>(std::lround(std::sqrt(nTriangles / 2.0)));
  Folder const folder;
  std::string const strPath = (folder.m_Path / (std::string("model") + format.m_szExtension)).string();
  if (Assimp::Exporter().Export(MakeScene(nMeshes, nSide).get(), format.m_szExporter, strPath) != aiReturn_SUCCESS ||
      !IsRight(strPath, format.m_bNormals, std::uint64_t{2} * nMeshes * nSide * nSide)) {
    state.SkipWithError("the model is not what was written");
    return;
  }
  for ([[maybe_unused]] auto _ : state) {
    Timing reader;
    Timing assimp;
    Timing process;
    // The large cases show less noise.
    int const nRounds = nTriangles > 100000 ? 5 : 15;
    for (int nRound = 0; nRound < nRounds; ++nRound) {
      std::unique_ptr<QXC::ModelDataInfo> pModel;
      reader.Time([&] { pModel = Read(strPath); });
      pModel.reset();
      Assimp::Importer importer;
      assimp.Time([&] { benchmark::DoNotOptimize(Import(importer, strPath, format.m_bNormals)); });
      importer.FreeScene();
      process.Time([&] { ImportInProcess(strPath, format.m_bNormals); });
    }
    state.SetIterationTime(reader.m_dProcessor);
    state.counters["assimp_ms"] = 1e3 * assimp.m_dProcessor;
    state.counters["ratio"] = reader.m_dProcessor / assimp.m_dProcessor;
    state.counters["process_ms"] = 1e3 * process.m_dProcessor;
    state.counters["process_ratio"] = reader.m_dProcessor / process.m_dProcessor;
    state.counters["wall_ms"] = 1e3 * reader.m_dWall;
    state.counters["wall_ratio"] = reader.m_dWall / assimp.m_dWall;
  }
  state.SetLabel(std::string(format.m_szExtension) + (bCity ? " city" : " grid"));
}

void Cases(benchmark::internal::Benchmark* pBenchmark) {
  for (int nFormat = 0; nFormat < static_cast<int>(std::size(Formats)); ++nFormat) {
    // No mesh of 3DS has more than 65,535 vertices or triangles.
    pBenchmark->Args({nFormat, 0, 2048})->Args({nFormat, 0, 50000});
    if (Formats[nFormat].m_bNormals) pBenchmark->Args({nFormat, 0, 500000});
    pBenchmark->Args({nFormat, 1, 18000});
  }
}

BENCHMARK(Load)
    ->ArgNames({"format", "city", "triangles"})
    ->Apply(Cases)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace

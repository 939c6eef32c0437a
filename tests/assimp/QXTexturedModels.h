/// @file
/// A sign in several formats: an upright square of 4 x 4 on the x axis that looks at -y, covered with one picture whose
/// first row is on top.
#pragma once

#include <tests/foundation/stream/QXByteWriter.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QXAssimp {

using QXC::QXByteWriter;

/// z is up.
inline std::string MakeSignObj(std::string const& strMtl) {
  return "mtllib " + strMtl +
         "\nv 0 0 0\nv 4 0 0\nv 4 0 4\nv 0 0 4\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 -1 0\n"
         "usemtl sign\nf 1/1/1 2/2/1 3/3/1 4/4/1\n";
}

/// @param strMap  options and name behind map_Kd
inline std::string MakeSignMtl(std::string const& strMap, std::string const& strColor = "1 1 1") {
  return "newmtl sign\nKd " + strColor + "\nmap_Kd " + strMap + "\n";
}

inline std::string EncodeBase64(std::vector<unsigned char> const& vecBytes) {
  static constexpr char Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string strText;
  for (std::size_t i = 0; i < vecBytes.size(); i += 3) {
    std::uint32_t nWord = 0;
    for (std::size_t k = 0; k < 3; ++k) nWord = nWord << 8 | (i + k < vecBytes.size() ? vecBytes[i + k] : 0u);
    for (std::size_t k = 0; k < 4; ++k) strText += i + k > vecBytes.size() ? '=' : Digits[nWord >> (18 - 6 * k) & 63];
  }
  return strText;
}

/// What differs between signs in glTF, as JSON.
struct QXGltfSign {
  std::string m_strImage = R"("uri":"quarters.png")";
  std::string m_strSampler;
  /// Behind the index of the texture, with a comma before it.
  std::string m_strTextureInfo;
  /// Of the material, with a comma before it.
  std::string m_strMaterial;
};

/// Positions, two coordinate sets (the second runs backwards in u), indices: 48 + 32 + 32 + 12 bytes.
inline std::vector<unsigned char> MakeGltfBuffer() {
  QXByteWriter writer;
  writer.Floats({0, 0, 0, 4, 0, 0, 4, 4, 0, 0, 4, 0});
  writer.Floats({0, 1, 1, 1, 1, 0, 0, 0});
  writer.Floats({1, 1, 0, 1, 0, 0, 1, 0});
  writer.Shorts({0, 1, 2, 0, 2, 3});
  return writer.Get();
}

/// @param strBuffer  the buffer's JSON
inline std::string MakeGltfText(QXGltfSign const& sign, std::string const& strBuffer, std::string const& strViews) {
  return R"({"asset":{"version":"2.0"},"extensionsUsed":["KHR_texture_transform"],"scene":0,"scenes":[{"nodes":[0]}],)"
         R"("nodes":[{"mesh":0}],"meshes":[{"primitives":[{"attributes":{"POSITION":0,"TEXCOORD_0":1,"TEXCOORD_1":2},)"
         R"("indices":3,"material":0}]}],"materials":[{"name":"sign","pbrMetallicRoughness":{"baseColorTexture":)"
         R"({"index":0)" +
         sign.m_strTextureInfo + "}}" + sign.m_strMaterial + R"(}],"textures":[{"source":0,"sampler":0}],)" +
         R"("samplers":[{)" + sign.m_strSampler + R"(}],"images":[{)" + sign.m_strImage + R"(}],"buffers":[)" +
         strBuffer +
         R"(],"bufferViews":[{"buffer":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":32},)"
         R"({"buffer":0,"byteOffset":80,"byteLength":32},{"buffer":0,"byteOffset":112,"byteLength":12})" +
         strViews +
         R"(],"accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3","min":[0,0,0],"max":[4,4,0]},)"
         R"({"bufferView":1,"componentType":5126,"count":4,"type":"VEC2"},)"
         R"({"bufferView":2,"componentType":5126,"count":4,"type":"VEC2"},)"
         R"({"bufferView":3,"componentType":5123,"count":6,"type":"SCALAR"}]})";
}

inline std::string MakeSignGltf(QXGltfSign const& sign) {
  std::vector<unsigned char> const vecBuffer = MakeGltfBuffer();
  return MakeGltfText(sign,
      R"({"byteLength":124,"uri":"data:application/octet-stream;base64,)" + EncodeBase64(vecBuffer) + R"("})", "");
}

/// The picture stands in the file.
inline std::vector<unsigned char> MakeSignGlb(QXGltfSign sign, std::vector<unsigned char> const& vecPicture) {
  std::vector<unsigned char> vecBinary = MakeGltfBuffer();
  vecBinary.insert(vecBinary.end(), vecPicture.begin(), vecPicture.end());
  sign.m_strImage = R"("name":"carried","mimeType":"image/png","bufferView":4)";
  std::string strJson = MakeGltfText(sign, R"({"byteLength":)" + std::to_string(vecBinary.size()) + "}",
      R"(,{"buffer":0,"byteOffset":124,"byteLength":)" + std::to_string(vecPicture.size()) + "}");
  strJson.resize((strJson.size() + 3) / 4 * 4, ' ');
  vecBinary.resize((vecBinary.size() + 3) / 4 * 4);
  auto const nJson = static_cast<std::uint32_t>(strJson.size());
  auto const nBinary = static_cast<std::uint32_t>(vecBinary.size());
  QXByteWriter writer;
  writer.Ints({0x46546C67, 2, 28 + nJson + nBinary, nJson, 0x4E4F534A});
  writer.Bytes(std::vector<unsigned char>(strJson.begin(), strJson.end()));
  writer.Int(nBinary).Int(0x004E4942).Bytes(vecBinary);
  return writer.Get();
}

inline std::vector<unsigned char> MakeChunk(std::uint16_t nId, std::vector<unsigned char> const& vecContent) {
  QXByteWriter writer;
  writer.Short(nId).Int(static_cast<std::int64_t>(6 + vecContent.size()));
  return writer.Bytes(vecContent).Get();
}

/// z is up. @param vecMap  chunks of the map behind its name
inline std::vector<unsigned char> MakeSign3ds(std::string const& strPicture, std::vector<unsigned char> const& vecMap) {
  QXByteWriter map;
  map.Bytes(MakeChunk(0xA300, QXByteWriter().ZeroText(strPicture).Get())).Bytes(vecMap);
  QXByteWriter material;
  material.Bytes(MakeChunk(0xA000, QXByteWriter().ZeroText("sign").Get()))
      .Bytes(MakeChunk(0xA020, MakeChunk(0x0011, {128, 128, 128})))
      .Bytes(MakeChunk(0xA200, map.Get()));
  QXByteWriter faces;
  faces.Shorts({2, 0, 1, 2, 7, 0, 2, 3, 7});
  faces.Bytes(MakeChunk(0x4130, QXByteWriter().ZeroText("sign").Shorts({2, 0, 1}).Get()));
  QXByteWriter vertices;
  vertices.Short(4).Floats({0, 0, 0, 4, 0, 0, 4, 0, 4, 0, 0, 4});
  QXByteWriter coords;
  coords.Short(4).Floats({0, 0, 1, 0, 1, 1, 0, 1});
  QXByteWriter mesh;
  mesh.Bytes(MakeChunk(0x4110, vertices.Get()))
      .Bytes(MakeChunk(0x4140, coords.Get()))
      .Bytes(MakeChunk(0x4120, faces.Get()));
  QXByteWriter object;
  object.ZeroText("sign").Bytes(MakeChunk(0x4100, mesh.Get()));
  QXByteWriter editor;
  editor.Bytes(MakeChunk(0xAFFF, material.Get())).Bytes(MakeChunk(0x4000, object.Get()));
  return MakeChunk(0x4D4D, MakeChunk(0x3D3D, editor.Get()));
}

}  // namespace QXAssimp

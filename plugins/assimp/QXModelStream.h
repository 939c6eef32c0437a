/// @file
/// Models as bytes, between the process that imports and the one that asked.
#pragma once

#include <memory>
#include <span>
#include <vector>

namespace QXC {
class ModelDataInfo;
}

namespace QXAssimp {

/// Appends a model, all but its name, to bytes. The form is that of this machine and this build: both ends are the same
/// program.
void WriteModel(QXC::ModelDataInfo const& model, std::vector<unsigned char>& vecBytes);

/// Reads what WriteModel wrote. The other end may have run wild on a broken file, so nothing is believed: every count
/// against the bytes that remain, every index against what it points into.
/// @return  null if the bytes are no model, or one byte remains
std::unique_ptr<QXC::ModelDataInfo> ReadModel(std::span<unsigned char const> bytes);

}  // namespace QXAssimp

#pragma once

#include "commands.h"
#include "input_file.h"

namespace facetor {

// Conversions into several files or of several. Each returns the exit status and has reported what
// failed.

/// A model, and perhaps a texture list behind it, into an OBJ with its material file and pictures
/// or into a glb.
int runExport(Run& run, const ConvertOptions& options);

/// A model's target image. dataError, with the cause in `reason`, when a fixed-point field cannot
/// hold a value or the model's Gouraud tables would overwrite what lies behind them; targetForm
/// fills the message's placeholder.
Message modelImage(Bytes& image, const Model& model, float scale, Reason& reason);
/// A texture list's target image: what formatTextureImage() returns, and dataError for sizes that
/// overwrite memory of the target or that it would read wrongly.
Message textureImage(Bytes& image, const TextureList& list, Reason& reason);
inline constexpr char targetForm[] = "target";

/// A model and a texture list into one target image, the model's blocks first.
int runBothImages(Run& run, const ConvertOptions& options);

/// A texture list into a folder of pictures.
int runUnpack(Run& run, const ConvertOptions& options);

/// Pictures into a texture list.
int runPictures(Run& run, const ConvertOptions& options);

/// Whether a path is a folder's: it ends in a slash or there is one.
bool isFolder(const std::string& path);

} // namespace facetor

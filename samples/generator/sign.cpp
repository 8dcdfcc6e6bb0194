#include "samples.h"

#include "model_builder.h"

namespace facetor::samples {

Message makeSign(Model& model, std::uint16_t texture)
{
    constexpr Rgb555 orange = rgb555(31, 18, 4);
    ModelBuilder builder;
    Part& post = builder.add("Post", noObject, {0, 40, 0});
    post.quad({Point{-8, -40, 0}, {8, -40, 0}, {8, 80, 0}, {-8, 80, 0}}, smooth(orange));
    Part& board = builder.add("Board", 0, {0, -80, 0});
    board.quad({Point{-40, -40, 0}, {40, -40, 0}, {40, 40, 0}, {-40, 40, 0}},
               textured(texture, orange).with(nearClip));
    board.quad({Point{40, -40, 4}, {-40, -40, 4}, {-40, 40, 4}, {40, 40, 4}},
               plain(rgb555(20, 20, 20))
                   .dualSided()
                   .shaded({rgb555(16, 16, 16), rgb555(24, 16, 16), rgb555(16, 24, 16),
                            rgb555(16, 16, 24)}));
    return builder.build(model);
}

} // namespace facetor::samples

#include "attr/attribute_fields.h"

#include <gtest/gtest.h>

namespace facetor {

TEST(AttributeFields, EachIsToldAppliedAndNothingElse)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    const WorkingAttribute other{1,
                                 sortFarthest,
                                 7,
                                 0x1234,
                                 textureMap | shadowMode | flipHorizontal | flipVertical |
                                     meshMode | gouraudShading | nearClip,
                                 {1, 2, 3, 4}};
    for (std::uint32_t field = 1; field <= allAttributeFields; field <<= 1) {
        SCOPED_TRACE(field);
        ASSERT_EQ(createModelStore(model), Message::none);
        for (std::uint32_t i : {1u, 3u}) model.attributes[i] = {0, 0, 0, 0x8000, 0x04000090, i};
        WorkingAttribute before, after;
        loadWorkingAttribute(before, model, 3);
        EXPECT_EQ(mixedFields(model), 0u);
        applyFields(model, other, field, PickedAfter::keep);
        loadWorkingAttribute(after, model, 3);
        // Without light they are before; of that field the others are told from the first.
        EXPECT_EQ(differingFields(before, after), field == fieldUseLight ? 0u : field);
        EXPECT_TRUE(isPicked(model.attributes[3]));
        EXPECT_EQ(model.attributes[3].flags & 0x04000000u, 0x04000000u) << "an unknown bit";
        model.attributes[1].flags &= ~std::uint32_t{picked};
        applyFields(model, before, allAttributeFields, PickedAfter::clear);
        model.attributes[1].flags |= picked;
        EXPECT_EQ(firstPicked(model), 1u);
        EXPECT_FALSE(isPicked(model.attributes[3]));
        model.attributes[3].flags |= picked;
        EXPECT_EQ(mixedFields(model), field == fieldUseLight ? 0u : field);
    }
}

} // namespace facetor

#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Dictionary.h>

namespace quillon::tools {

/// A view of `group`, and of the groups in it, in which a NaN reads as 0 where `peer` has a NaN in
/// the same array at the same position.
///
/// In files a NaN stands for a missing value, and missing on both sides is no difference; the
/// library's comparison takes no two NaN for the same. Made for both sides, each with the other as
/// its peer.
/// Borrows both groups. An array without a peer of its type and shape is shown as it is.
memory::Dictionary withEqualNaNs(const object_model::Dictionary& group,
                                 const object_model::Dictionary& peer);

}  // namespace quillon::tools

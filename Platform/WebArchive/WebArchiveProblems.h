#pragma once

// What is wrong with an archive's file: why it is no archive, or what of it the reader leaves out.

#include <cstddef>
#include <string>
#include <vector>

namespace qrv {

struct WebArchiveProblem {
    /// What does not reach the archive because of this.
    enum class Loss {
        archive,  ///< there is no archive
        frame,    ///< a frame with all that belongs to it
        resource, ///< a subresource
        field,    ///< one optional field of a resource
        rest,     ///< what stands at this place, and all behind it in the same array
    };

    /// The keys that lead there, "WebSubframeArchives[2].WebMainResource.WebResourceData"; empty for the file
    /// as a whole.
    std::string place;
    /// "is missing"; for a file that is no property list what is wrong at which byte.
    std::string reason;
    Loss loss;
};

/// The problems in the order in which the reader meets them. A hostile file may have very many: of those
/// after `mostKept` only the number is kept.
struct WebArchiveProblems {
    static constexpr std::size_t mostKept = 1000;

    void add(WebArchiveProblem problem) {
        if (++count <= mostKept) kept.push_back(std::move(problem));
    }

    std::vector<WebArchiveProblem> kept;
    std::size_t count = 0;
};

} // namespace qrv

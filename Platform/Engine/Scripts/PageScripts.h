#pragma once

// The scripts that run in pages: one JavaScript file each in this folder and those below, embedded by the
// build. Each begins with a comment that says what it does with its arguments and what it answers. Most are
// functions that PageWorld calls in a page's isolated world; those that are meant for new documents are
// programs.

#include <string_view>

namespace qrv::engine {

struct PageScript {
    std::string_view name;   ///< of the file
    std::string_view source; ///< tells the engine its name, for stack traces
};

namespace scripts {

/// The functions that the others use; to be evaluated in a world before any of them is called there.
extern const PageScript shared;

// Loading/. The first five are programs for new documents, which run before the page's own scripts.

extern const PageScript keepOpen;                ///< in the page's own world
extern const PageScript ignoreDomain;            ///< in the page's own world
extern const PageScript awaitNoTakeover;         ///< in the page's own world
extern const PageScript watchView;               ///< in the isolated world
extern const PageScript refuseSilentNavigations; ///< in the isolated world
extern const PageScript enter;
extern const PageScript title;
extern const PageScript titleAndOwner;
extern const PageScript encoding;

// Readiness/

extern const PageScript awaitContents;
extern const PageScript presentMedia;
extern const PageScript awaitFrame;
extern const PageScript picturesInUse;
extern const PageScript renewImageSets;
extern const PageScript chooseImagesAnew;
extern const PageScript substituteImages;
extern const PageScript holdView;
extern const PageScript reveal;
extern const PageScript pretendScripts;
extern const PageScript conclude;

// Print/

extern const PageScript standStill;
extern const PageScript unrollScrollers;
extern const PageScript measure;
extern const PageScript describe;
extern const PageScript describeFrame;
extern const PageScript applyPrintStyle;
extern const PageScript releaseBoxes;
extern const PageScript easePaint;
extern const PageScript divide;
extern const PageScript showPart;

} // namespace scripts

} // namespace qrv::engine

#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace qrv::engine {

// Sources of JavaScript for the isolated world of the main frame, which bring a page to the state in which it
// is to be drawn. They trust nothing that a document can name or overwrite.

// To be run in every new document before the page's own scripts. Sees to it that the page does not notice
// when its view is enlarged for a moment: while it is held, it gets no events of resizing and scrolling.
std::string viewHoldingScript();

// A promise for the fonts in use, and for the images and first video pictures of the page and of all its
// frames of the same origin, open shadow trees included, or for the time to be over. To be evaluated before
// the page's scripts are switched off: without them the timer never ends. A page that is a single picture or
// film gets its natural size. Answers {"documentHeight": px, "viewHeight": px, "failed": array of {"chosen":
// address, "candidates": array of addresses}}, the latter for images that could not be had and were chosen
// among several.
std::string readinessScript(std::chrono::milliseconds limit);

// Leaves only these among the addresses from which the images that could not be had are chosen.
std::string substitutingScript(const std::vector<std::string>& addresses);

// Begins to hold the page's view. To be evaluated before the view is enlarged.
std::string holdingScript();

// A promise for everything that a page shows once it is scrolled to: lets each part of the document be in the
// enlarged view for a frame, and where images still wait then, tells the page that it was scrolled.
std::string revealingScript(std::chrono::milliseconds limit);

// To be evaluated when the page's scripts stand still and the view has its own size again: takes back
// animations that show an element only as it is scrolled into the view. Answers the number of images that are
// still on their way.
std::string concludingScript();

} // namespace qrv::engine

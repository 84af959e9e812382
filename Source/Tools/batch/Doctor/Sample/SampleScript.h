#pragma once

// The script of the sample page: SamplePage.js, which the build makes a constant of.

namespace qrv::batch {

extern const char* const sampleScript;

} // namespace qrv::batch

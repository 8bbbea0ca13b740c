#pragma once

// The most memory the process has held so far, in megabytes.
long peakMegabytes();

#pragma once

namespace nivora::linuxdesktop {

// Bounds what the C library's heaps keep for later. To be called before the first
// thread starts.
//
// Left alone, the library gives each thread a heap (up to eight for each processor),
// and once it has seen a large block come and go it takes the next ones of that size
// from the heaps too, where they leave holes. Our threads take turns with texts of all
// lengths, so every heap would grow to what the longest takes and keep it. Here all
// threads share two, and a block of 256 KiB or more goes back to the system when it is
// freed.
void limitHeaps();

} // namespace nivora::linuxdesktop

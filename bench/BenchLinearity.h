#ifndef BenchLinearity_H
#define BenchLinearity_H

// The S rows of the parts that no other row times alone: generating a
// session, the workspace traversals, and reading a text map and a property
// set by index. Each row is the time per unit at `large` over that at
// `small`; a step that scans per unit makes it near large / small.
void benchLinearity(long small, long large, int pairs);

#endif

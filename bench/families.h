// The families of rows, one source each.
#pragma once

namespace bench {

class Bench;

void codecRows(Bench& bench);
void stringRows(Bench& bench);
void numberRows(Bench& bench);
void bagRows(Bench& bench);
void messageRows(Bench& bench);
void readingRows(Bench& bench);
void writingRows(Bench& bench);
void fileRows(Bench& bench);

}  // namespace bench

// The debug lines of the Levenberg-Marquardt fits on the standard output.
// They are part of the library's behaviour: hosts log them.
#ifndef ZELMO_LMFIT_CONSOLE_H_
#define ZELMO_LMFIT_CONSOLE_H_

namespace zelmo {
namespace lmfit {

// "catch error\n": an exception escaped the solver.
void printCatchError();

// "<mean> <sd> <hi> <lo>\n", flushed: the band of a sigma filter.
void printBand(float mean, float sd, double hi, double lo);

// "<kept> <count>\n", flushed: points kept by a filter, of all.
void printKept(int kept, int count);

// "min_n_maxvalue=<T>\n": the threshold of a combined proportion filter,
// flushed or not as the fit has it.
void printThreshold(float threshold, bool flush);

// "param:<p0> <p1> ... <p(n-1)>\n", flushed: the start values a fit got
// from sample consensus.
void printSeed(const double* params, int n);

}  // namespace lmfit
}  // namespace zelmo

#endif  // ZELMO_LMFIT_CONSOLE_H_

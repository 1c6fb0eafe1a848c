#ifndef VARNEL_BENCH_SERVICES_H
#define VARNEL_BENCH_SERVICES_H

namespace VARNEL_BENCH {

/// Each registers the rows of one service.
void AddStrings();
void AddMatching();
void AddNumbers();
void AddTime();
void AddEvents();
void AddTl1();
void AddCmdStr();
void AddComNEMsg();
void AddFiles();
void AddCommand();
void AddScaling();

}  // namespace VARNEL_BENCH

#endif

#ifndef VARNEL_BENCH_SERVICES_H
#define VARNEL_BENCH_SERVICES_H

namespace VARNEL_BENCH {

/// Each registers the rows of one service.
void AddStrings();
void AddCmdStr();
void AddComNEMsg();
void AddFiles();
void AddCommand();
void AddScaling();

}  // namespace VARNEL_BENCH

#endif

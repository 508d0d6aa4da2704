/* Writes down how it was started: one line "key value" for each fact. The first argument names the file, which appears
 * whole, by a rename. */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <unistd.h>

extern char** environ;

enum { MAX_DESCRIPTORS = 20000, MAX_GROUPS = 65536 };

static int openDescriptors[MAX_DESCRIPTORS];
static gid_t groups[MAX_GROUPS];

static void copyStatusLines(FILE* out) {
    FILE* status = fopen("/proc/self/status", "re");
    char line[4096];
    while (status != NULL && fgets(line, sizeof(line), status) != NULL) {
        if (strncmp(line, "Sig", 3) == 0) {
            char* colon = strchr(line, ':');
            *colon = ' ';
            fputs(line, out);
        }
    }
    if (status != NULL) {
        fclose(status);
    }
}

int main(int argc, char** argv) {
    int openCount = 0;
    for (int i = 0; i < MAX_DESCRIPTORS; i++) {
        if (fcntl(i, F_GETFD) >= 0) {
            openDescriptors[openCount++] = i;
        }
    }
    if (argc < 2) {
        return 3;
    }
    char temporary[PATH_MAX];
    snprintf(temporary, sizeof(temporary), "%s.part", argv[1]);
    FILE* out = fopen(temporary, "we");
    if (out == NULL) {
        return 4;
    }
    fprintf(out, "pid %d\nppid %d\nsid %d\npgid %d\n", getpid(), getppid(), getsid(0), getpgid(0));
    uid_t ruid, euid, suid;
    gid_t rgid, egid, sgid;
    getresuid(&ruid, &euid, &suid);
    getresgid(&rgid, &egid, &sgid);
    fprintf(out, "uid %u %u %u\ngid %u %u %u\n", ruid, euid, suid, rgid, egid, sgid);
    int groupCount = getgroups(MAX_GROUPS, groups);
    for (int i = 0; i < groupCount; i++) {
        fprintf(out, "group %u\n", groups[i]);
    }
    struct rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    fprintf(out, "nofile %llu %llu\n", (unsigned long long)limit.rlim_cur, (unsigned long long)limit.rlim_max);
    int deathSignal = 0;
    prctl(PR_GET_PDEATHSIG, &deathSignal);
    fprintf(out, "deathsignal %d\n", deathSignal);
    char directory[PATH_MAX];
    fprintf(out, "cwd %s\n", getcwd(directory, sizeof(directory)) != NULL ? directory : strerror(errno));
    for (int i = 0; i < argc; i++) {
        fprintf(out, "arg %s\n", argv[i]);
    }
    for (char** entry = environ; *entry != NULL; entry++) {
        fprintf(out, "env %s\n", *entry);
    }
    for (int i = 0; i < openCount; i++) {
        fprintf(out, "fd %d\n", openDescriptors[i]);
    }
    copyStatusLines(out);
    if (fclose(out) != 0 || rename(temporary, argv[1]) != 0) {
        return 5;
    }
    return 0;
}

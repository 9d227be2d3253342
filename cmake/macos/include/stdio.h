#pragma once
#include "_base.h"
typedef struct __sFILE FILE;
typedef __int64_t fpos_t;
#define EOF (-1)
#define BUFSIZ 1024
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#define _IOFBF 0
#define _IOLBF 1
#define _IONBF 2
#define FILENAME_MAX 1024
#define FOPEN_MAX 20
#define L_tmpnam 1024
#define TMP_MAX 308915776
#define stdin __stdinp
#define stdout __stdoutp
#define stderr __stderrp
DARWIN_C_BEGIN
extern FILE *__stdinp, *__stdoutp, *__stderrp;
int remove(const char*);
int rename(const char*, const char*);
FILE* tmpfile(void);
char* tmpnam(char*);
int fclose(FILE*);
int fflush(FILE*);
FILE* fopen(const char*, const char*) DARWIN_UNIX2003("fopen");
FILE* fdopen(int, const char*) DARWIN_UNIX2003("fdopen");
int fileno(FILE*);
FILE* freopen(const char*, const char*, FILE*) DARWIN_UNIX2003("freopen");
void setbuf(FILE*, char*);
int setvbuf(FILE*, char*, int, size_t);
int fprintf(FILE*, const char*, ...) __attribute__((format(printf, 2, 3)));
int fscanf(FILE*, const char*, ...);
int printf(const char*, ...) __attribute__((format(printf, 1, 2)));
int scanf(const char*, ...);
int snprintf(char*, size_t, const char*, ...) __attribute__((format(printf, 3, 4)));
int sprintf(char*, const char*, ...);
int sscanf(const char*, const char*, ...);
int vfprintf(FILE*, const char*, va_list);
int vfscanf(FILE*, const char*, va_list);
int vprintf(const char*, va_list);
int vscanf(const char*, va_list);
int vsnprintf(char*, size_t, const char*, va_list);
int vsprintf(char*, const char*, va_list);
int vsscanf(const char*, const char*, va_list);
int vasprintf(char**, const char*, va_list);
int asprintf(char**, const char*, ...);
int fgetc(FILE*);
char* fgets(char*, int, FILE*);
int fputc(int, FILE*);
int fputs(const char*, FILE*) DARWIN_UNIX2003("fputs");
int getc(FILE*);
int getchar(void);
int putc(int, FILE*);
int putchar(int);
int puts(const char*);
int ungetc(int, FILE*);
size_t fread(void*, size_t, size_t, FILE*);
size_t fwrite(const void*, size_t, size_t, FILE*) DARWIN_UNIX2003("fwrite");
int fgetpos(FILE*, fpos_t*);
int fseek(FILE*, long, int);
int fseeko(FILE*, off_t, int);
off_t ftello(FILE*);
int fsetpos(FILE*, const fpos_t*);
long ftell(FILE*);
void rewind(FILE*);
void clearerr(FILE*);
int feof(FILE*);
int ferror(FILE*);
void perror(const char*);
DARWIN_C_END

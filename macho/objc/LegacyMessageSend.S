// The function that compiled messages of a 32-bit macOS image call (see MessageSend.h), and the
// processor-specific part of LegacyTry.h. All arguments are on the stack, which is aligned to 16 bytes at
// each call. This code does not call other libraries directly, because such a call needs a register that
// belongs to the caller.

        .text

        .globl  macho_objc_msgSend
        .type   macho_objc_msgSend, @function
macho_objc_msgSend:
        .cfi_startproc
        movl    4(%esp), %eax
        testl   %eax, %eax
        je      1f
        movl    %esp, %ecx
        movl    8(%esp), %edx
        subl    $12, %esp
        .cfi_def_cfa_offset 16
        pushl   %ecx
        .cfi_adjust_cfa_offset 4
        pushl   %edx
        .cfi_adjust_cfa_offset 4
        pushl   %eax
        .cfi_adjust_cfa_offset 4
        call    macho_methodInTry
        addl    $24, %esp
        .cfi_def_cfa_offset 4
        jmp     *%eax
1:      xorl    %edx, %edx
        ret
        .cfi_endproc
        .size   macho_objc_msgSend, . - macho_objc_msgSend

// The return address of a method that was called inside @try. The arguments are still on the stack. Unwinding
// ends here.
        .globl  macho_guardedReturn
        .hidden macho_guardedReturn
        .type   macho_guardedReturn, @function
        .cfi_startproc
        .cfi_personality 0x1b, macho_tryPersonality
        .cfi_def_cfa_offset 0
        .cfi_undefined 8
        nop             // a frame is looked up by the byte before its return address
macho_guardedReturn:
        subl    $16, %esp
        .cfi_adjust_cfa_offset 16
        movl    %eax, 0(%esp)
        movl    %edx, 4(%esp)
        call    macho_endGuard
        movl    %eax, %ecx
        movl    0(%esp), %eax
        movl    4(%esp), %edx
        addl    $16, %esp
        .cfi_adjust_cfa_offset -16
        jmp     *%ecx

// The landing pad for an exception of such a method.
        .globl  macho_guardedCatch
        .hidden macho_guardedCatch
        .type   macho_guardedCatch, @function
macho_guardedCatch:
        movl    %esp, %ecx
        subl    $8, %esp
        .cfi_adjust_cfa_offset 8
        pushl   %ecx
        .cfi_adjust_cfa_offset 4
        pushl   %eax
        .cfi_adjust_cfa_offset 4
        call    macho_continueInHandler
        ud2
        .cfi_endproc
        .size   macho_guardedReturn, . - macho_guardedReturn

        .globl  macho_setjmp
        .type   macho_setjmp, @function
macho_setjmp:
        .cfi_startproc
        movl    4(%esp), %eax
        movl    (%esp), %ecx
        leal    4(%esp), %edx
        movl    %ebx, 0(%eax)
        movl    %esi, 4(%eax)
        movl    %edi, 8(%eax)
        movl    %ebp, 12(%eax)
        movl    %edx, 16(%eax)
        movl    %ecx, 20(%eax)
        xorl    %eax, %eax
        ret
        .cfi_endproc
        .size   macho_setjmp, . - macho_setjmp

        .globl  macho_longjmp
        .hidden macho_longjmp
        .type   macho_longjmp, @function
macho_longjmp:
        .cfi_startproc
        movl    4(%esp), %edx
        movl    $1, %eax
        movl    0(%edx), %ebx
        movl    4(%edx), %esi
        movl    8(%edx), %edi
        movl    12(%edx), %ebp
        movl    16(%edx), %esp
        jmp     *20(%edx)
        .cfi_endproc
        .size   macho_longjmp, . - macho_longjmp

        .section .note.GNU-stack, "", @progbits
